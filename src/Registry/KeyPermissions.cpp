#include "Registry/KeyPermissions.h"

#include <aclapi.h>

#include <string>

#include "Common/Handles.h"
#include "Common/TokenSplitter.h"
#include "Common/Trace.h"

namespace {

// The name of a root at the head of an object name; null for anything but a predefined root.
const char *ObjectPrefix(RegRoot root)
{
    switch (root) {
    case kRootLocalMachine:
        return "MACHINE\\";
    case kRootCurrentUser:
        return "USER\\";
    case kRootUsers:
        return "USERS\\";
    case kRootClasses:
        return "ROOT\\";
    case kRootCurrentConfig:
        return "CONFIG\\";
    default:
        return nullptr;
    }
}

} // namespace

bool SetKeyPermissions(const RegLocation &location)
{
    trace(1, "keyBasePath: %s, permissions: %s\n", location.mPath.c_str(), location.mPermissions.c_str());
    TokenSplitter splitter(":", location.mPermissions);
    const std::string group = splitter.First();
    const std::string right = splitter.Next();
    if (location.mPath.empty() || group.empty() || right.empty()) {
        traceExpectation("!\"SetKeyPermissions - bad arg(s)\"");
        return false;
    }
    if (group != "Users") {
        traceExpectation("!\"SetKeyPermissions - Unknown group specified\"");
        return false;
    }
    if (right != "FullControl") {
        traceExpectation("!\"SetKeyPermissions - Unknown permissions specified\"");
        return false;
    }
    const char *const prefix = ObjectPrefix(location.mRootKey);
    if (prefix == nullptr) {
        traceExpectation("!\"SetKeyPermissions - Unknown baseKey specified\"");
        return false;
    }
    const std::string objectName = prefix + location.mPath;
    return SetKeySecurityDescriptor(objectName.c_str(), group.c_str(), GENERIC_ALL) == ERROR_SUCCESS;
}

DWORD SetKeySecurityDescriptor(const char *objectName, const char *trustee, DWORD mask)
{
    if (objectName == nullptr || trustee == nullptr) {
        traceExpectation("!\"Bad arg(s) to SetKeySecurityDescriptor\"");
        return ERROR_INVALID_PARAMETER;
    }
    // The functions below take texts that they only read as writable.
    char *const object = const_cast<char *>(objectName);

    PACL oldList = nullptr; // lies inside the descriptor
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    DWORD result = GetNamedSecurityInfoA(object, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, &oldList,
                                         nullptr, &descriptor);
    const CLocalMemory descriptorOwner(descriptor);
    if (result != ERROR_SUCCESS) {
        trace(1, "GetNamedSecurityInfo - error: %u\n", static_cast<unsigned>(result));
        return result;
    }

    EXPLICIT_ACCESSA entry = {};
    entry.grfAccessPermissions = mask;
    entry.grfAccessMode = SET_ACCESS;
    entry.grfInheritance = CONTAINER_INHERIT_ACE;
    entry.Trustee.TrusteeForm = TRUSTEE_IS_NAME;
    entry.Trustee.TrusteeType = TRUSTEE_IS_UNKNOWN;
    entry.Trustee.ptstrName = const_cast<char *>(trustee);
    PACL newList = nullptr;
    result = SetEntriesInAclA(1, &entry, oldList, &newList);
    const CLocalMemory listOwner(newList);
    if (result != ERROR_SUCCESS) {
        trace(1, "SetEntriesInAcl - error: %u\n", static_cast<unsigned>(result));
        return result;
    }

    result =
        SetNamedSecurityInfoA(object, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, newList, nullptr);
    if (result != ERROR_SUCCESS) {
        trace(1, "SetNamedSecurityInfo - error: %u\n", static_cast<unsigned>(result));
    }
    return result;
}

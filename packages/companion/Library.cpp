// The companion as a library: one export a request, each with plain texts of the system's code page.
#include <string>

#include "Companion.h"

// __stdcall does as well; the names of the exports stay plain.
#ifndef COMPANION_CALL
#define COMPANION_CALL __cdecl
#endif

namespace {

unsigned CarryOutBy(const char *entry, std::initializer_list<std::string> arguments)
{
    std::string request = std::string("library ") + entry;
    for (const std::string &argument : arguments) {
        request += " [" + argument + "]";
    }
    return CarryOut(request.c_str());
}

} // namespace

extern "C" {

__declspec(dllexport) unsigned COMPANION_CALL DevInstall(const char *device, const char *inf)
{
    return CarryOutBy("DevInstall", {device, inf});
}

__declspec(dllexport) unsigned COMPANION_CALL DevUpdate(const char *device, const char *inf)
{
    return CarryOutBy("DevUpdate", {device, inf});
}

__declspec(dllexport) unsigned COMPANION_CALL DevInstallSelectedDriver(const char *device, const char *inf)
{
    return CarryOutBy("DevInstallSelectedDriver", {device, inf});
}

__declspec(dllexport) unsigned COMPANION_CALL DevRemove(const char *device)
{
    return CarryOutBy("DevRemove", {device});
}

__declspec(dllexport) unsigned COMPANION_CALL DevRemoveSelectedDriver(const char *device)
{
    return CarryOutBy("DevRemoveSelectedDriver", {device});
}

__declspec(dllexport) unsigned COMPANION_CALL DevRemoveOemInf(const char *matchLine)
{
    return CarryOutBy("DevRemoveOemInf", {matchLine});
}

// Not a status: null is the failure.
__declspec(dllexport) const void *COMPANION_CALL
    ChangeFriendlyName(unsigned char first, unsigned char second, unsigned char usage, const char *name)
{
    const unsigned status =
        CarryOutBy("ChangeFriendlyName", {std::to_string(first), std::to_string(second), std::to_string(usage), name});
    return status == 0 ? name : nullptr;
}

} // extern "C"

#include "Shell/ShellLink.h"

#include <windows.h>

#include <shlobj.h>

#include "Common/ComApartment.h"
#include "Common/Handles.h"
#include "Common/importWin32API.h"
#include "Common/Numbers.h"
#include "Common/Paths.h"
#include "Common/Redirection.h"
#include "Common/TextConversions.h"
#include "Common/Trace.h"
#include "Files/Directories.h"
#include "Files/FileDelete.h"

namespace {

constexpr int kReadBack = 260;
constexpr int kNoIcon = -1;
constexpr char kDriverProgram[] = "!SYSTEM!\\tablet.exe";

using LinkPointer = CComPointer<IShellLinkA>;

void Fill(IShellLinkA *object, const LinkFields &link)
{
    if (link.mTarget.compare(0, 1, ".") == 0) {
        object->SetRelativePath(link.mTarget.c_str(), 0);
    } else {
        object->SetPath(link.mTarget.c_str());
    }
    if (!link.mArguments.empty()) {
        object->SetArguments(link.mArguments.c_str());
    }
    if (!link.mDescription.empty()) {
        object->SetDescription(link.mDescription.c_str());
    }
    if (!link.mWorkingDir.empty()) {
        object->SetWorkingDirectory(link.mWorkingDir.c_str());
    }
    if (link.mHotkey != 0) {
        object->SetHotkey(link.mHotkey);
    }
    if (link.mShowCmd != SW_SHOWNORMAL) {
        object->SetShowCmd(link.mShowCmd);
    }
    if (!link.mIconFile.empty()) {
        object->SetIconLocation(link.mIconFile.c_str(), link.mIconIndex);
    }
}

// Traces what the shell made of one text.
void TraceText(IShellLinkA *object, HRESULT (WINAPI IShellLinkA::*read)(LPSTR, int), const char *name)
{
    char text[kReadBack] = "";
    (object->*read)(text, kReadBack);
    text[kReadBack - 1] = '\0'; // a text that fills the room may come without its end
    trace(9, "CreateLinkEx: %s: %s\n", name, text);
}

void TraceLink(IShellLinkA *object)
{
    TraceText(object, &IShellLinkA::GetArguments, "Args");
    TraceText(object, &IShellLinkA::GetDescription, "Descr");
    TraceText(object, &IShellLinkA::GetWorkingDirectory, "WorkingDir");
}

HRESULT WriteLink(const std::wstring &linkFile, const LinkFields &link)
{
    EnterComApartment(); // where that fails the next call tells
    LinkPointer object;
    HRESULT result = Ole32().CoCreateInstance(__uuidof(::ShellLink), nullptr, CLSCTX_INPROC_SERVER,
                                              __uuidof(IShellLinkA), reinterpret_cast<void **>(object.Receive()));
    if (FAILED(result)) {
        return result;
    }
    Fill(object.Get(), link);
    trace(9, "CreateLinkEx: linkFile: %s\n", WideToAnsi(linkFile).c_str());
    TraceLink(object.Get());
    CComPointer<IPersistFile> file;
    result = object.Get()->QueryInterface(__uuidof(IPersistFile), reinterpret_cast<void **>(file.Receive()));
    return SUCCEEDED(result) ? file.Get()->Save(linkFile.c_str(), TRUE) : result;
}

int IconNumber(const std::string &iconText)
{
    return iconText.empty() ? kNoIcon : DecimalNumber(iconText);
}

std::string LinkFile(const std::string &folder, const std::string &name)
{
    return JoinPath(folder, name + ".lnk");
}

} // namespace

bool CreateLinkEx(const std::wstring &linkFile, const LinkFields &link)
{
    const HRESULT result = WriteLink(linkFile, link);
    SetLastError(static_cast<DWORD>(result) & 0xffff);
    return SUCCEEDED(result);
}

bool MakeLink(const std::string &target, const std::string &linkPath, const std::string &description,
              const std::string &arguments, int iconNumber, const MacroExpander &expand)
{
    LinkFields link;
    link.mTarget = target;
    link.mArguments = arguments;
    link.mDescription = description;
    link.mWorkingDir = DirectoryPart(target);
    link.mIconIndex = iconNumber;
    if (iconNumber == 0) {
        link.mIconFile = expand(kDriverProgram);
    } else if (iconNumber != kNoIcon) {
        link.mIconFile = target;
    }
    return CreateLinkEx(AnsiToWide(linkPath), link);
}

bool CreateLinkStep(const std::string &target, const std::string &linkPath, const std::string &iconText,
                    const std::string &arguments, bool disableRedirect, const MacroExpander &expand)
{
    const STDisableRedirect redirect(disableRedirect);
    trace(7, "File %s%s\n", target.c_str(), redirect.TraceText());
    if (!PathExists(target)) {
        trace(7, ", Missing\n");
        return false;
    }
    if (!linkPath.empty()) {
        CreateDirTree(DirectoryPart(linkPath));
    }
    const int icon = IconNumber(iconText);
    const DWORD errorBefore = GetLastError();
    const bool created = MakeLink(target, linkPath, linkPath, arguments, icon, expand);
    trace(7, ", link %s, desc %s, args %s, icon %i, Created %s %i\n", linkPath.c_str(), linkPath.c_str(),
          arguments.c_str(), icon, YesNo(created), static_cast<int>(errorBefore));
    return true;
}

void CreateOemLink(const std::string &oemFile, const std::string &name, const std::function<std::string()> &readName,
                   const std::string &folder, const std::string &target, const std::string &iconText,
                   const MacroExpander &expand)
{
    trace(7, "Oem File %s\n", oemFile.c_str());
    if (!PathExists(oemFile)) {
        trace(7, "Missing\n");
        return;
    }
    trace(7, "Get LINK/%s\n", name.c_str());
    const std::string text = readName();
    if (text.empty()) {
        trace(7, "Empty\n");
        return;
    }
    trace(7, "value %s, File %s\n", text.c_str(), target.c_str());
    if (!PathExists(target)) {
        trace(7, "Missing\n");
        return;
    }
    CreateDirTree(folder);
    const std::string linkPath = LinkFile(folder, text);
    const int icon = IconNumber(iconText);
    const DWORD errorBefore = GetLastError();
    const bool created = MakeLink(target, linkPath, text, std::string(), icon, expand);
    trace(7, "link %s, desc %s, icon %i, Created %s %i\n", linkPath.c_str(), text.c_str(), icon, YesNo(created),
          static_cast<int>(errorBefore));
}

bool DeleteOemLink(const std::string &folder, const std::function<std::string()> &readName)
{
    trace(7, "File %s\n", folder.c_str());
    if (!PathExists(folder)) {
        trace(7, ", Missing\n");
        return false;
    }
    DeleteOrFail(LinkFile(folder, readName())); // without a name that is ".lnk", which nobody misses
    return true;
}

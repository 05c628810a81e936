#include "Shell/StartMenu.h"

#include <windows.h>

#include <functional>

#include "Common/Paths.h"
#include "Common/Redirection.h"
#include "Common/ResourceUtils.h"
#include "Common/TextConversions.h"
#include "Common/Trace.h"
#include "Files/Directories.h"
#include "Files/FileDelete.h"
#include "Shell/DisplayNames.h"
#include "Shell/ShellLink.h"

namespace {

// A text of a link that may be a reference, resolved.
struct ResolvedText {
    std::string mText;
    std::string mDll; // empty: not from a DLL
    int mNumber = 0;
};

ResolvedText Resolve(const std::string &text, bool numberOnFailure)
{
    ResolvedText resolved;
    resolved.mNumber = LoadDLLStringResource(text, resolved.mText, resolved.mDll, numberOnFailure);
    return resolved;
}

// The words are the same wherever a link's file is named, whatever is done to it.
std::string LinkFile(const LinkData &link, const std::string &name, const std::string &folder)
{
    std::string linkFile = JoinPath(folder, LinkFileName(link, name));
    if (link.mLinkName.empty()) {
        trace(9, "ProcessXMLData: mLink.empty: linkFile: %s\n", linkFile.c_str());
    } else {
        trace(9, "ProcessXMLData: mLink.empty (NOT): linkFile: %s\n", linkFile.c_str());
    }
    return linkFile;
}

void NameFolder(const std::string &folder, const std::string &reference)
{
    const ResourceReference resource = ParseReference(reference);
    if (!resource.mHasNumber) {
        trace(7, ", invalid resource\n");
        return;
    }
    const int number = static_cast<int>(resource.mNumber);
    const DWORD errorBefore = GetLastError();
    const bool named = SetDisplayName(folder, resource.mDll, number);
    trace(7, ", Display Name %s, %i, (%s, %i)\n", resource.mDll.c_str(), number, YesNo(named),
          static_cast<int>(errorBefore));
}

void CreateOneLink(const LinkData &link, const std::string &folder)
{
    const ResolvedText name = Resolve(link.mName, true);
    const std::string command = Resolve(link.mCommand, false).mText;
    const std::string resolvedDescription = Resolve(link.mDescription, false).mText;
    const std::string linkFile = LinkFile(link, name.mText, folder);
    const LinkIcon icon = IconOf(link, command);
    LinkFields fields;
    fields.mTarget = command;
    fields.mArguments = link.mParameters;
    fields.mDescription = DescriptionOf(link, name.mText, resolvedDescription);
    fields.mWorkingDir = !link.mWorkingDir.empty() ? link.mWorkingDir : DirectoryPart(command);
    fields.mHotkey = HotkeyOf(link);
    fields.mShowCmd = link.mShowCmd;
    fields.mIconFile = icon.mFile;
    fields.mIconIndex = icon.mIndex;

    const STDisableRedirect redirect(link.mRedirect);
    if (!PathExists(command)) {
        trace(9, "Link command %s not found\n", command.c_str());
        return;
    }
    DWORD errorBefore = GetLastError();
    const bool created = CreateLinkEx(AnsiToWide(linkFile), fields);
    trace(9, "Creating link %s %s (%s, %s) %s, @%s [%X]%i, %s %i (%s, %i)\n", name.mText.c_str(), linkFile.c_str(),
          command.c_str(), fields.mArguments.c_str(), fields.mDescription.c_str(), fields.mWorkingDir.c_str(),
          static_cast<unsigned>(fields.mHotkey), fields.mShowCmd, icon.mFile.c_str(), static_cast<int>(icon.mIndex),
          YesNo(created), static_cast<int>(errorBefore));
    if (!name.mDll.empty()) {
        errorBefore = GetLastError();
        const bool named = SetDisplayName(linkFile, name.mDll, name.mNumber);
        trace(7, "Display name for %s is %s (%i), Set %s %i\n", linkFile.c_str(), name.mDll.c_str(), name.mNumber,
              YesNo(named), static_cast<int>(errorBefore));
    }
}

void ForEachShownLink(const StartData &start, const std::function<void(const LinkData &)> &work)
{
    for (const std::string &id : start.mOrder) {
        const auto link = start.mLinks.find(id);
        if (link != start.mLinks.end() && IsShown(link->second)) {
            work(link->second);
        }
    }
}

} // namespace

std::string CommonPrograms(const ShellRun &run)
{
    return run.mExpandMacros("!COMMON PROGRAMS!");
}

void RemoveOldStartFolder(const std::string &suffix, const ShellRun &run)
{
    const std::string folder = TakeRecordedFolder(suffix);
    if (folder.empty()) {
        return;
    }
    trace(7, "Old start folder %s\n", folder.c_str());
    DWORD errorBefore = GetLastError();
    const bool unnamed = RemoveDisplayNameTree(folder);
    trace(7, ", Display names removed %s %i\n", YesNo(unnamed), static_cast<int>(errorBefore));
    errorBefore = GetLastError();
    const bool emptied = EmptyDirectory(folder, run.mUninstall);
    trace(7, ", Emptied %s %i\n", YesNo(emptied), static_cast<int>(errorBefore));
    errorBefore = GetLastError();
    const bool removed = RemoveDirectoryForced(folder);
    trace(7, ", Deleted old StartFolder (%s,%i)\n", YesNo(removed), static_cast<int>(errorBefore));
}

std::string CreateStartFolder(const StartData &start, const std::string &suffix, const ShellRun &run)
{
    std::string programs = CommonPrograms(run);
    if (start.mFolder.empty()) {
        trace(9, "No Start Folder Specified\n");
        return programs;
    }
    const bool isReference = IsReference(start.mFolder);
    std::string folder = JoinPath(programs, isReference ? start.mFolderN : start.mFolder);
    const DWORD errorBefore = GetLastError();
    const bool created = CreateDirTree(folder) != FALSE;
    if (isReference) {
        trace(7, "Create start folder (dll) %s (%s,%i)\n", folder.c_str(), YesNo(created),
              static_cast<int>(errorBefore));
        NameFolder(folder, start.mFolder);
    } else {
        trace(9, "Create start folder %s (%s,%i), no resource\n", folder.c_str(), YesNo(created),
              static_cast<int>(errorBefore));
        // A folder with a name from a DLL is not recorded: the description leads to it.
        WriteShellValue(DriverKey(), ERegViewProcess, kStartFolderValue + suffix, folder);
    }
    return folder;
}

void CreateLinks(const StartData &start, const std::string &folder)
{
    ForEachShownLink(start, [&](const LinkData &link) { CreateOneLink(link, folder); });
}

void DeleteLinks(const StartData &start, const std::string &folder)
{
    ForEachShownLink(start, [&](const LinkData &link) {
        const std::string linkFile = LinkFile(link, Resolve(link.mName, true).mText, folder);
        const DWORD errorBefore = GetLastError();
        const bool deleted = DeleteOrFail(linkFile);
        trace(7, "link %s, Emptied %s %i\n", linkFile.c_str(), YesNo(deleted), static_cast<int>(errorBefore));
    });
}

// Shell links, the files behind the entries of menus. Paths and texts are in the ANSI code page; failures are told by
// the last error and the trace.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

// What a link holds. Fields at their defaults are not written.
struct LinkFields {
    std::string mTarget; // one that begins with "." is stored as relative to the link
    std::string mArguments;
    std::string mDescription;
    std::string mWorkingDir;
    uint16_t mHotkey = 0; // virtual key, HOTKEYF_ modifiers in the high byte
    int mShowCmd = 1;
    std::string mIconFile;
    int mIconIndex = -1;
};

// Gives an expanded text for one with macros of the script.
using MacroExpander = std::function<std::string(const std::string &)>;

// Writes a link file, replacing what stands there. The folder has to exist. Enters COM where that has not been done.
// Answers whether it was written; the last error is the low half of the result of COM.
bool CreateLinkEx(const std::wstring &linkFile, const LinkFields &link);

// Makes a link to `target` that works in the target's folder. The icon is chosen by a number: -1 for none, 0 for that
// of the driver's program in the system folder, others for the icon of the target with this index.
bool MakeLink(const std::string &target, const std::string &linkPath, const std::string &description,
              const std::string &arguments, int iconNumber, const MacroExpander &expand);

// The commands. `iconText` is a number as atoi reads it, none when it is empty.
//
// Makes a link to a file, which has to exist, and the folders that the link needs. The link path is its description,
// too. Answers whether the target exists.
bool CreateLinkStep(const std::string &target, const std::string &linkPath, const std::string &iconText,
                    const std::string &arguments, bool disableRedirect, const MacroExpander &expand);

// Makes a link in `folder` to a file, under the name that stands in an OEM data file under `name`; `readName` gives it.
void CreateOemLink(const std::string &oemFile, const std::string &name, const std::function<std::string()> &readName,
                   const std::string &folder, const std::string &target, const std::string &iconText,
                   const MacroExpander &expand);

// Deletes the link in `folder` whose name `readName` gives. Answers whether the folder exists.
bool DeleteOemLink(const std::string &folder, const std::function<std::string()> &readName);

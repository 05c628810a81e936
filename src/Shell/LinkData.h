// The Start-menu part of the descriptions: a folder and its shortcuts.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Shell/Description.h"

// The shortcut that leads to the package's own page of the Control Panel.
constexpr char kControlPanelLink[] = "cpl";

constexpr uint16_t kNoHotkey = 0xFFFF;
constexpr int32_t kNoIconIndex = -1;

// One shortcut. Texts that begin with "@" refer to a string of a resource DLL: @DLL,NUMBER.
struct LinkData {
    std::string mName;
    std::string mCommand;
    std::string mLinkName; // of the file; empty: the name
    std::string mDescription;
    std::string mParameters;
    std::string mWorkingDir;
    uint16_t mHotkey = kNoHotkey;
    int32_t mShowCmd = 1;
    std::string mIcon; // file; empty: the command
    int32_t mIconIndex = kNoIconIndex;
    bool mVisible = true;
    bool mRedirect = false; // the command is meant as the 64-bit system sees it
};

struct StartData {
    std::string mFolder;  // below the Programs menu of all users; may be a reference; empty: the menu itself
    std::string mFolderN; // name of the folder on the disk when mFolder is a reference
    bool mVisible = true;
    std::map<std::string, LinkData> mLinks; // by id
    std::vector<std::string> mOrder;        // ids; one without a link means nothing
};

// Adds what one document says to `start_I_O`: a later document completes the links that an earlier one made. A null
// document says nothing. The Control Panel's shortcut gets `controlPanelName` for a name unless that is empty.
// Answers 1.
int ProcessLinkData(StartData &start_I_O, xmlDoc *doc, const std::string &dllFile, const std::string &controlPanelName,
                    bool isMaker, IDescriptionTexts &texts);

// Whether a shortcut is made of the link: it is visible, and has a name and a command.
bool IsShown(const LinkData &link);

// Name of the shortcut's file: the link's own or the resolved display name, cut at its last point, and ".lnk".
std::string LinkFileName(const LinkData &link, const std::string &name);

// What a reference is made of: all behind the "@" up to the first comma, and the number behind that comma. Without a
// comma the number is 0 and mHasNumber false.
struct ResourceReference {
    std::string mDll;
    int32_t mNumber = 0;
    bool mHasNumber = false;
};
ResourceReference ParseReference(const std::string &text);

// File and index of the shortcut's icon; `command` is the resolved one.
struct LinkIcon {
    std::string mFile;
    int32_t mIndex = kNoIconIndex;
};
LinkIcon IconOf(const LinkData &link, const std::string &command);

// The shortcut's comment: the link's own, resolved where the DLL had the string, else its name.
std::string DescriptionOf(const LinkData &link, const std::string &name, const std::string &description);

// The hot key as the shell takes it, 0 for none.
uint16_t HotkeyOf(const LinkData &link);

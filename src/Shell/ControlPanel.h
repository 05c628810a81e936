// The package's entry in the Control Panel: what the descriptions say of it, and the values of the registry that it is
// made of.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Registry/RegPath.h"
#include "Shell/Description.h"

// Something that a user can do there; the Control Panel finds it by its name and its keywords.
struct CplTask {
    std::string mTaskGuid;
    std::string mName;
    std::string mKeywords; // "-" for none
    std::string mCommand;
    bool mVisible = false;
};

// The tasks that a category of the Control Panel lists, each as task id and a name of its own there, empty for the
// task's.
struct CplCategoryData {
    std::vector<std::pair<std::string, std::string>> mEntries;
    bool mVisible = false;
};

struct CplData {
    std::string mGuid; // empty: no entry
    std::string mName;
    std::string mTooltip;
    std::string mCanonicalName;
    std::string mValueName;
    std::string mLocation; // of the settings program
    std::map<std::string, CplTask> mLinks;
    std::map<std::string, CplCategoryData> mCategories; // by the number that Windows gives a category
};

// Adds what one document says to `cpl_I_O`. Only the maker's document names the entry's GUID, location and value; it
// gets a new GUID when it names none. A null document says nothing. Answers 1, or 0 for a document that wants none of
// its Control Panel data read.
int ProcessTaskData(CplData &cpl_I_O, xmlDoc *doc, const std::string &dllFile, bool isMaker, IDescriptionTexts &texts);

// One value of the registry. Its name is "@" for the unnamed one; the type is that of winnt.h.
struct CplValue {
    RegRoot mRoot;
    std::string mKey;
    std::string mName;
    uint32_t mType;
    std::string mData;
};

// Name of the value that leads Windows to the tasks file.
constexpr char kTasksFileValue[] = "System.Software.TasksFileUrl";

// Keys below which an entry has one of its own, named by its GUID: under HKEY_LOCAL_MACHINE and HKEY_CLASSES_ROOT.
constexpr char kNameSpaceKey[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\ControlPanel\\NameSpace\\";
constexpr char kClassKey[] = "CLSID\\";

// Whether the GUID names keys of its own below these two. An empty one would name the keys of all entries and classes.
bool HasOwnKeys(const std::string &guid);

// The values of the entry in the order in which they are written. Those Windows versions that know tasks files, by
// their OS type, get one more.
std::vector<CplValue> ControlPanelValues(const CplData &cpl, const std::string &tasksFile, int32_t osType);

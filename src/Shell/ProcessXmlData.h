// Registers a package with the shell: Start-menu folder and shortcuts, Control Panel entry with its tasks, the resource
// DLL of the computer's maker, the name in the list of installed programs.
#pragma once

#include <string>

#include "Shell/ShellRun.h"

// Any of the files may be missing.
struct XmlDataFiles {
    std::string mXmlFile;      // the maker's description
    std::string mDllFile;      // with the strings that it refers to
    std::string mOemXmlFile;   // the OEM's description, which completes it
    std::string mOemDllFile;   // where the DLL inside that one goes to
    std::string mTasksFile;    // is written
    std::string mExtraXmlFile; // is merged into the maker's description
};

// Answers 1 whatever could be done; each thing that could not stands in the trace.
int ProcessXMLData(const XmlDataFiles &files, const ShellRun &run);

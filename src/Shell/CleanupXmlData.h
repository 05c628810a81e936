// Takes back what ProcessXMLData() did, by the same description: Control Panel entry, Start-menu folder or shortcuts,
// and on request the files of the computer's maker.
#pragma once

#include <string>

#include "Shell/ShellRun.h"

// Left behind are the value among the Control Panel's programs, which the next installation overwrites, the tasks file,
// and a folder whose name came from a DLL. A file that is in use goes at the next start of Windows, for which
// rebootRequired_I_O is set then. Answers 1 whatever could be done; each thing that could not stands in the trace.
int CleanupXMLData(const std::string &xmlFile, const std::string &dllFile, const ShellRun &run,
                   bool &rebootRequired_I_O);

// The package's folder and shortcuts in the Programs menu of all users.
#pragma once

#include <string>

#include "Shell/LinkData.h"
#include "Shell/ShellRun.h"

// The Programs menu of all users.
std::string CommonPrograms(const ShellRun &run);

// Takes the folder away that an earlier installation recorded, with everything in it.
void RemoveOldStartFolder(const std::string &suffix, const ShellRun &run);

// Makes the folder of the shortcuts, gives it its display name and records it; answers its path.
std::string CreateStartFolder(const StartData &start, const std::string &suffix, const ShellRun &run);

// Makes the shortcuts in the order of the descriptions. What does not work stands in the trace.
void CreateLinks(const StartData &start, const std::string &folder);

// Deletes the files that CreateLinks() would make in `folder`.
void DeleteLinks(const StartData &start, const std::string &folder);

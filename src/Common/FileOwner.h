// Whose a file is. What lies in a folder that others may write to may be somebody else's, or a link that he laid.
#pragma once

#include <windows.h>

#include <string>

#include "Common/Handles.h"

// Whether an open file (READ_CONTROL) belongs to the user of this process, to the administrators or to the system.
// False when Windows does not tell.
bool IsOwnFile(HANDLE file);

// Whether an open file stands for another one, or has more names than the one that it was opened by.
bool IsLinkedFile(HANDLE file);

// Whether others than the user of this process, the administrators and the system may make files in the folder; true
// when Windows does not tell.
bool OthersMayWrite(const std::string &folder);

// Makes a new file under a name that nothing else had, in `folder`, open for reading and writing and shared with
// nobody. Its path comes back in path_O. Nothing on failure.
CHandle MakeOwnFile(const std::string &folder, std::string &path_O);

// Takes away what stands under a path, a link and not what it leads to. Answers whether nothing stands there any more.
bool RemoveName(const std::string &path);

// What the deleting commands do beside the central object. Paths are script text in the ANSI code page;
// failures are told by the last error.
#pragma once

#include <string>

// Deletes the file at `path` for good, read-only or hidden ones too. Answers true when nothing stands there
// any more, or never did, with the last error 0; error 80 when something stands there in spite of a success.
bool DeleteOrFail(const std::string &path);

// The same, and tells in *found_O whether there was something to delete.
bool DeleteOrFail(const std::string &path, bool *found_O);

// Has Windows delete `path` at its next start, and traces it. Answers whether there was a file. The run does
// not come to need a restart by it: the script that asks for this decides.
bool DeleteAtReboot(const std::string &path);

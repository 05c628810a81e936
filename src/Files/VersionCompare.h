// Which of two files is the newer one. Paths are script text in the ANSI code page.
#pragma once

#include <string>

// Whether `source` should replace `target`: its product version is newer, or the target was written earlier. Either
// is enough, so a source of a lower version but a later time replaces the target. A missing target
// counts as older than a source with a version; a source without one, as not newer. Works with redirection
// off whatever the command was, and leaves it on.
bool IsFileNewer(const std::string &target, const std::string &source);

// Whether the DriverVer entry of the INF file `source` replaces that of `target`; file times play no part. Works
// with redirection off as IsFileNewer() does. Lets the exception of ParseDriverVer() pass, with redirection restored.
bool IsInfNewer(const std::string &target, const std::string &source);

// Whether `first` was last written before `second`. False when the time of either cannot be read.
bool IsWriteTimeEarlier(const std::string &first, const std::string &second);

// Versions as files carry them: the version resource of a program or library, the DriverVer entry of an INF file.
#pragma once

#include <string>

#include "Common/DriverDate.h"
#include "Common/FileVersion.h"

// The ProductVersion text of the file's version resource, in the first language that the resource lists. `path` is
// UTF-8. The binary version numbers of the resource do not count. A missing file, a file without such a text and a
// damaged resource give the zero value.
FileVersion ReadProductVersion(const std::string &path);

// The DriverVer entry of section Version of an INF file; `path` is UTF-8. The platform's rule for profile files holds:
// a path without a folder means the Windows folder. A missing file or entry gives the empty value. Throws what
// ParseDriverVer() throws.
DriverDate ReadInfDriverVersion(const std::string &path);

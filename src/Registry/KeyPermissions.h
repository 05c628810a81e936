// Opens a registry key up for ordinary users, so that the driver's own settings can be written without rights.
#pragma once

#include <windows.h>

#include "Registry/RegPath.h"

// Applies the location's permission text, GROUP:RIGHT, to its key. The one group known is Users and the one right
// FullControl, both with regard to case. The path comes without a leading back-slash. Answers whether the key has the
// permission now; what is wrong otherwise stands in the trace.
bool SetKeyPermissions(const RegLocation &location);

// Gives the trustee, a group or user by name, the access `mask` to a registry key and to the keys that are made below
// it; what else the access list holds stays. `objectName` is the key as the security functions of Windows name it, such
// as MACHINE\Software\X; it is looked up in the view of this process. Answers a platform error number, 0 for success.
DWORD SetKeySecurityDescriptor(const char *objectName, const char *trustee, DWORD mask);

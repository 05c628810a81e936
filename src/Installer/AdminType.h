// What the user of this process may do.
#pragma once

#include <cstdint>

// 1 for an administrator, 2 for one whose token is filtered (who could elevate), 0 for anyone else or when unknown.
uint32_t GetUserAdminType();

// Calls of functions whose calling convention is not known.
#pragma once

#include <windows.h>

#include <cstdint>
#include <initializer_list>

// Calls `entry` with these arguments, each a number or a pointer, and answers what it returns. Companions are built by
// others, with compilers of different habits: whether the function takes its arguments off the stack itself
// (__stdcall) or leaves that to its caller (__cdecl), the stack is what it was before.
uint32_t CallForeign(FARPROC entry, std::initializer_list<uint32_t> arguments);

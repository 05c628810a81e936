#include "Devices/ForeignCall.h"

#ifndef __i386__
#error "the stack of the call is laid out for 32-bit Windows"
#endif

// Not inlined, so that nothing of the caller depends on the stack pointer while the call is under way.
__attribute__((noinline)) uint32_t CallForeign(FARPROC entry, std::initializer_list<uint32_t> arguments)
{
    uint32_t result = reinterpret_cast<uintptr_t>(entry);
    const uint32_t *first = arguments.begin();
    size_t count = arguments.size();
    // Both conventions keep %ebx, where the stack pointer waits. The arguments begin at a multiple of 16 bytes, which
    // some compilers count on.
    asm volatile("movl %%esp, %%ebx\n\t"
                 "leal (,%%ecx,4), %%edi\n\t"
                 "subl %%edi, %%esp\n\t"
                 "andl $-16, %%esp\n\t"
                 "movl %%esp, %%edi\n\t"
                 "cld\n\t"
                 "rep movsl\n\t"
                 "call *%%eax\n\t"
                 "movl %%ebx, %%esp\n\t"
                 : "+a"(result), "+S"(first), "+c"(count)
                 :
                 : "ebx", "edx", "edi", "memory", "cc");
    return result;
}

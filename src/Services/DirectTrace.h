// Records of the services layer that have no level: they are written while trace output is switched on.
#pragma once

#include "Common/Trace.h"

#define TVX_TRACE_DIRECT(...)                                                                                          \
    do {                                                                                                               \
        if (TracesToDebugOut()) {                                                                                      \
            traceAlways(__VA_ARGS__);                                                                                  \
        }                                                                                                              \
    } while (false)

// The OS type of the running Windows.
#pragma once

#include "Common/CSystemState.h"

class CWinSystemState : public CSystemState {
public:
    // Determines the OS type from the running Windows, once; with `force` also when it is already known.
    static void DetermineOSType(bool force);
};

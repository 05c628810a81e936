// What the central object holds of Windows for the length of a run.
#pragma once

#include <windows.h>

#include "Common/Handles.h"
#include "Installer/CWinInstallMain.h"
#include "UI/CInstallerWindow.h"
#include "UI/Threads.h"

struct CWinInstallMain::Handles {
    explicit Handles(CRunState &run) : mWindow(run, mProgress) {}

    CHandle mRunningMutex;
    HINSTANCE mInstance = nullptr;
    CProgressThread mProgress;
    CInstallerWindow mWindow;
};

// The lock of the trace file.
#pragma once

#include <windows.h>

#include <memory>

// An abstract lock; both operations answer 0.
class CTvxSemaphore {
public:
    virtual ~CTvxSemaphore() = default;
    virtual int Lock() = 0;
    virtual int Unlock() = 0;
};

// A critical section as lock: one thread at a time, the owner may lock again.
class CWinNTTvxSemaphore : public CTvxSemaphore {
public:
    CWinNTTvxSemaphore() { InitializeCriticalSection(&mSection); }
    ~CWinNTTvxSemaphore() override { DeleteCriticalSection(&mSection); }
    CWinNTTvxSemaphore(const CWinNTTvxSemaphore &) = delete;
    CWinNTTvxSemaphore &operator=(const CWinNTTvxSemaphore &) = delete;

    int Lock() override
    {
        EnterCriticalSection(&mSection);
        return 0;
    }
    int Unlock() override
    {
        LeaveCriticalSection(&mSection);
        return 0;
    }

private:
    CRITICAL_SECTION mSection;
};

// Holds a lock for the length of a scope, and the lock itself alive with it.
class CTvxLock {
public:
    explicit CTvxLock(const std::shared_ptr<CTvxSemaphore> &semaphore) : mSemaphore(semaphore) { mSemaphore->Lock(); }
    ~CTvxLock() { mSemaphore->Unlock(); }
    CTvxLock(const CTvxLock &) = delete;
    CTvxLock &operator=(const CTvxLock &) = delete;

private:
    std::shared_ptr<CTvxSemaphore> mSemaphore;
};

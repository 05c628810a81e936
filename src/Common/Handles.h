// Move-only owners of what Windows hands out. One policy names the type, the values that own nothing
// and the closer; every closer leaves the last error as it was, because result lines report the error
// of the call before the clean-up.
#pragma once

#include <windows.h>

// An owner that is empty, or holds one value and closes it when it is destroyed or given another.
template <typename TPolicy>
class COwner {
public:
    using Type = typename TPolicy::Type;

    COwner() = default;
    explicit COwner(Type value) : mValue(value) {}
    COwner(COwner &&other_I) noexcept : mValue(other_I.Release()) {}
    COwner &operator=(COwner &&other_I) noexcept
    {
        if (this != &other_I) {
            Reset(other_I.Release());
        }
        return *this;
    }
    COwner(const COwner &) = delete;
    COwner &operator=(const COwner &) = delete;
    ~COwner() { Reset(); }

    explicit operator bool() const { return TPolicy::Owns(mValue); }
    Type Get() const { return mValue; }

    // Gives the value away without closing it.
    Type Release()
    {
        const Type value = mValue;
        mValue = TPolicy::Empty();
        return value;
    }

    // Closes what is held and takes `value` instead.
    void Reset(Type value = TPolicy::Empty())
    {
        if (TPolicy::Owns(mValue) && mValue != value) {
            const DWORD error = GetLastError();
            TPolicy::Close(mValue);
            SetLastError(error);
        }
        mValue = value;
    }

    // Closes what is held; the address is for a call that answers its handle through a pointer.
    Type *Receive()
    {
        Reset();
        return &mValue;
    }

private:
    Type mValue = TPolicy::Empty();
};

// Kernel objects: some calls answer null for a failure and some INVALID_HANDLE_VALUE; neither is closed.
struct HandlePolicy {
    using Type = HANDLE;
    static Type Empty() { return nullptr; }
    static bool Owns(Type value) { return value != nullptr && value != INVALID_HANDLE_VALUE; }
    static void Close(Type value) { CloseHandle(value); }
};
using CHandle = COwner<HandlePolicy>;

// Searches of FindFirstFile, whose failure value is INVALID_HANDLE_VALUE.
struct FindHandlePolicy : HandlePolicy {
    static Type Empty() { return INVALID_HANDLE_VALUE; }
    static void Close(Type value) { FindClose(value); }
};
using CFindHandle = COwner<FindHandlePolicy>;

// What is null when it owns nothing.
template <typename TType, typename TResult, TResult(WINAPI *TCloser)(TType)>
struct PointerPolicy {
    using Type = TType;
    static Type Empty() { return nullptr; }
    static bool Owns(Type value) { return value != nullptr; }
    static void Close(Type value) { TCloser(value); }
};
using CRegKey = COwner<PointerPolicy<HKEY, LONG, RegCloseKey>>;
using CServiceHandle = COwner<PointerPolicy<SC_HANDLE, BOOL, CloseServiceHandle>>;
using CLibrary = COwner<PointerPolicy<HMODULE, BOOL, FreeLibrary>>;
using CLocalMemory = COwner<PointerPolicy<HLOCAL, HLOCAL, LocalFree>>;

// COM objects; several owners of one object are made with QueryInterface.
template <typename TInterface>
struct ComPolicy {
    using Type = TInterface *;
    static Type Empty() { return nullptr; }
    static bool Owns(Type value) { return value != nullptr; }
    static void Close(Type value) { value->Release(); }
};
template <typename TInterface>
using CComPointer = COwner<ComPolicy<TInterface>>;

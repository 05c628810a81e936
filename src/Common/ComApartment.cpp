#include "Common/ComApartment.h"

#include <windows.h>

#include "Common/Handles.h"
#include "Common/importWin32API.h"

namespace {

struct CApartment {
    bool mOpen = false;
    bool mAsked = false;
    HRESULT mResult = E_FAIL;
    CLibrary mOle;
};

CApartment gApartment;

} // namespace

CComApartmentScope::CComApartmentScope()
{
    gApartment.mOpen = true;
    gApartment.mAsked = false;
    gApartment.mResult = E_FAIL;
}

CComApartmentScope::~CComApartmentScope()
{
    if (gApartment.mResult == S_OK) {
        using CoUninitializeEntry = void(WINAPI *)();
        const auto uninitialize = BindEntry<CoUninitializeEntry>(gApartment.mOle.Get(), "CoUninitialize");
        if (uninitialize != nullptr) {
            uninitialize();
        }
    }
    gApartment.mOpen = false;
    gApartment.mOle.Reset();
}

bool EnterComApartment()
{
    if (!gApartment.mOpen) {
        return false;
    }
    if (!gApartment.mAsked) {
        gApartment.mAsked = true;
        gApartment.mOle.Reset(LoadSystemLibrary("ole32.dll"));
        using CoInitializeEntry = HRESULT(WINAPI *)(LPVOID);
        const auto initialize =
            gApartment.mOle ? BindEntry<CoInitializeEntry>(gApartment.mOle.Get(), "CoInitialize") : nullptr;
        gApartment.mResult = initialize != nullptr ? initialize(nullptr) : E_FAIL;
    }
    return SUCCEEDED(gApartment.mResult);
}

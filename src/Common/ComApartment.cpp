#include "Common/ComApartment.h"

#include <windows.h>

#include "Common/importWin32API.h"

namespace {

struct CApartment {
    bool mOpen = false;
    bool mAsked = false;
    HRESULT mResult = E_FAIL;
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
        Ole32().CoUninitialize();
    }
    gApartment.mOpen = false;
}

bool EnterComApartment()
{
    if (!gApartment.mOpen) {
        return false;
    }
    if (!gApartment.mAsked) {
        gApartment.mAsked = true;
        gApartment.mResult = Ole32().CoInitialize(nullptr);
    }
    return SUCCEEDED(gApartment.mResult);
}

// COM on the thread that runs the steps.
#pragma once

// The stretch in which steps may use COM. OLE alone doubles the time that a run needs to start, and most runs never
// use it, so the apartment is entered by the first step that asks for it and left at the end of the scope.
// One scope at a time: there is one thread that runs steps.
class CComApartmentScope {
public:
    CComApartmentScope();

    // Calls CoUninitialize when CoInitialize answered S_OK, and only then.
    ~CComApartmentScope();
    CComApartmentScope(const CComApartmentScope &) = delete;
    CComApartmentScope &operator=(const CComApartmentScope &) = delete;
};

// Initialises COM for the scope that is open, once. Answers whether COM is there to be used: false without a scope,
// without OLE on the machine, or when another kind of apartment stands on this thread.
bool EnterComApartment();

// A companion with one export, which crashes; it lacks all others.
extern "C" __declspec(dllexport) unsigned DevInstall(const char *, const char *)
{
    volatile int *const nowhere = nullptr;
    return static_cast<unsigned>(*nowhere);
}

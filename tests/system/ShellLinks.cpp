#include "ShellLinks.h"

#include <windows.h>

#include <shlobj.h>

#include <cstdio>
#include <vector>

namespace {

std::string Shown(IShellLinkA *link)
{
    char target[MAX_PATH] = "", arguments[MAX_PATH] = "", description[MAX_PATH] = "", folder[MAX_PATH] = "";
    char icon[MAX_PATH] = "", text[6 * MAX_PATH];
    int index = 0;
    WORD hotkey = 0;
    link->GetPath(target, MAX_PATH, nullptr, SLGP_RAWPATH);
    link->GetArguments(arguments, MAX_PATH);
    link->GetDescription(description, MAX_PATH);
    link->GetWorkingDirectory(folder, MAX_PATH);
    link->GetHotkey(&hotkey);
    link->GetIconLocation(icon, MAX_PATH, &index);
    snprintf(text, sizeof text, "%s; %s; %s; %s; %X; %s, %d", target, arguments, description, folder, hotkey, icon,
             index);
    return text;
}

} // namespace

std::string ShownLink(const std::string &path)
{
    const bool entered = SUCCEEDED(CoInitialize(nullptr));
    std::string shown;
    IShellLinkA *link = nullptr;
    if (SUCCEEDED(CoCreateInstance(__uuidof(::ShellLink), nullptr, CLSCTX_INPROC_SERVER, __uuidof(IShellLinkA),
                                   reinterpret_cast<void **>(&link)))) {
        IPersistFile *file = nullptr;
        link->QueryInterface(__uuidof(IPersistFile), reinterpret_cast<void **>(&file));
        wchar_t wide[MAX_PATH] = L"";
        MultiByteToWideChar(CP_ACP, 0, path.c_str(), -1, wide, MAX_PATH);
        if (file != nullptr && SUCCEEDED(file->Load(wide, STGM_READ))) {
            shown = Shown(link);
        }
        if (file != nullptr) {
            file->Release();
        }
        link->Release();
    }
    if (entered) {
        CoUninitialize();
    }
    return shown;
}

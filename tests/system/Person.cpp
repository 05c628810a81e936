#include "Person.h"

#include <commctrl.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <sstream>
#include <vector>

namespace {

constexpr DWORD kPatienceMs = 30000;
constexpr DWORD kLookAgainMs = 20;

std::string Utf8(const std::wstring &text)
{
    std::string bytes(text.size() * 3 + 1, '\0');
    bytes.resize(
        static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), bytes.data(),
                                                static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

std::string TextOf(HWND window)
{
    std::wstring text(0x8000, L'\0');
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG, 5000,
                        &length);
    text.resize(length);
    std::string line;
    for (const char letter : Utf8(text)) {
        line += letter == '\n' ? "/" : letter == '\r' ? "" : std::string(1, letter);
    }
    return line;
}

RECT PlaceIn(HWND window, HWND control)
{
    RECT place = {};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT *>(&place), 2);
    return place;
}

bool Until(const std::function<bool()> &holds)
{
    const DWORD start = GetTickCount();
    while (!holds()) {
        if (GetTickCount() - start > kPatienceMs) {
            return false;
        }
        Sleep(kLookAgainMs);
    }
    return true;
}

bool Shows(const std::string &page, const std::string &texts)
{
    std::istringstream stream(texts);
    bool all = !page.empty();
    for (std::string text; std::getline(stream, text, '|');) {
        const bool absent = text[0] == '!';
        all = all && (page.find(text.substr(absent ? 1 : 0)) == std::string::npos) == absent;
    }
    return all;
}

bool Press(const std::string &name)
{
    static const std::map<std::string, BYTE> kKeys = {
        {"Return", VK_RETURN}, {"Escape", VK_ESCAPE}, {"Tab", VK_TAB},     {"Space", VK_SPACE},   {"Left", VK_LEFT},
        {"Right", VK_RIGHT},   {"Up", VK_UP},         {"Down", VK_DOWN},   {"PageUp", VK_PRIOR},  {"Home", VK_HOME},
        {"End", VK_END},       {"Alt", VK_MENU},      {"Shift", VK_SHIFT}, {"PageDown", VK_NEXT}, {"F4", VK_F4},
    };
    const size_t plus = name.find('+');
    const std::string first = name.substr(0, plus);
    const auto key = kKeys.find(first);
    if (key == kKeys.end() && first.size() != 1) {
        return false;
    }
    const BYTE code = key != kKeys.end() ? key->second : static_cast<BYTE>(first[0]);
    keybd_event(code, 0, 0, 0);
    const bool known = plus == std::string::npos || Press(name.substr(plus + 1));
    keybd_event(code, 0, KEYEVENTF_KEYUP, 0);
    return known;
}

// The middle of a control, as mouse messages carry it.
LPARAM MiddleOf(HWND control)
{
    RECT place = {};
    GetClientRect(control, &place);
    return MAKELPARAM(place.right / 2, place.bottom / 2);
}

// By messages as the mouse makes them: the pointer of the machine is shared with other tests.
bool Click(int id)
{
    const HWND button = ControlOnScreen(id);
    return PostMessageA(button, WM_LBUTTONDOWN, MK_LBUTTON, MiddleOf(button)) != FALSE &&
           PostMessageA(button, WM_LBUTTONUP, 0, MiddleOf(button)) != FALSE;
}

bool Wheel(int notches)
{
    const WPARAM turn = MAKEWPARAM(0, notches > 0 ? WHEEL_DELTA : -WHEEL_DELTA);
    for (int notch = 0; notch < std::abs(notches); ++notch) {
        PostMessageA(FocusOnScreen(), WM_MOUSEWHEEL, turn, 0);
    }
    return true;
}

// The box of the step Break.
bool AnswerBreak()
{
    HWND box = nullptr;
    return Until([&box] { return (box = FindWindowA("#32770", "BREAK")) != nullptr; }) &&
           PostMessageA(box, WM_COMMAND, IDOK, 0) != FALSE && Until([box] { return IsWindow(box) == FALSE; });
}

bool PressAll(const std::string &names)
{
    SetForegroundWindow(InstallerWindowOnScreen());
    std::istringstream stream(names);
    bool known = true;
    for (std::string name; known && stream >> name;) {
        known = Press(name);
    }
    return known;
}

bool Move(const std::string &verb, const std::string &rest)
{
    if (verb == "sees") {
        return Until([&rest] { return Shows(Page(), rest); });
    }
    if (verb == "gone") {
        return Until([] { return InstallerWindowOnScreen() == nullptr; });
    }
    if (verb == "bar") {
        const auto wanted = static_cast<LRESULT>(std::stoi(rest));
        return Until([wanted] {
            const HWND bar = ControlOnScreen(0);
            return bar != nullptr && SendMessageA(bar, PBM_GETPOS, 0, 0) >= wanted;
        });
    }
    if (verb == "close") {
        return PostMessageA(InstallerWindowOnScreen(), WM_CLOSE, 0, 0) != FALSE;
    }
    if (verb == "break") {
        return AnswerBreak();
    }
    return verb == "press"   ? PressAll(rest)
           : verb == "click" ? Click(std::stoi(rest))
           : verb == "wheel" ? Wheel(std::stoi(rest))
                             : false;
}

} // namespace

HWND InstallerWindowOnScreen(bool patient)
{
    HWND window = nullptr;
    const auto look = [&window] {
        window = FindWindowA("Tavix_WIN_Installer", nullptr);
        return window != nullptr && IsWindowVisible(window) != FALSE;
    };
    return (patient ? Until(look) : look()) ? window : nullptr;
}

HWND FocusOnScreen()
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(InstallerWindowOnScreen(), nullptr), &info);
    return info.hwndFocus;
}

std::string Page()
{
    const HWND window = InstallerWindowOnScreen();
    if (window == nullptr) {
        return "";
    }
    const HWND focus = FocusOnScreen();
    RECT size = {};
    GetWindowRect(window, &size);
    std::ostringstream page;
    page << TextOf(window) << ' ' << size.right - size.left << 'x' << size.bottom - size.top << '\n';
    for (HWND control = GetWindow(window, GW_CHILD); control != nullptr; control = GetWindow(control, GW_HWNDNEXT)) {
        const RECT place = PlaceIn(window, control);
        page << GetDlgCtrlID(control) << ' ' << TextOf(control) << ' ' << place.left << ' ' << place.top << ' '
             << place.right - place.left << ' ' << place.bottom - place.top << (control == focus ? " focus\n" : "\n");
    }
    return page.str();
}

HWND ControlOnScreen(int id)
{
    const HWND window = InstallerWindowOnScreen();
    return id != 0 ? GetDlgItem(window, id) : FindWindowExA(window, nullptr, "msctls_progress32", nullptr);
}

::testing::AssertionResult Person(const std::string &moves)
{
    std::istringstream stream(moves);
    for (std::string move; std::getline(stream, move, ';');) {
        std::istringstream words(move);
        std::string verb, rest;
        words >> verb;
        std::getline(words >> std::ws, rest);
        if (verb != "gone" && InstallerWindowOnScreen(true) == nullptr) {
            return ::testing::AssertionFailure() << "no window for \"" << move << '"';
        }
        if (!Move(verb, rest)) {
            return ::testing::AssertionFailure() << "waiting in vain for \"" << move << "\" at\n" << Page();
        }
    }
    return ::testing::AssertionSuccess();
}

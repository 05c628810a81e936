// The installer's window: one small top-level window that shows all pages, one after the other, and the loop that
// serves it. What it shows and what its keys do is decided in PageRules.h and PageKeyboard.h, where things stand in
// PageLayout.h; here it is carried out.
#pragma once

#include <windows.h>

#include <string>

#include "Common/Handles.h"
#include "Common/importWin32API.h"
#include "UI/PageKeyboard.h"
#include "UI/PageLayout.h"
#include "UI/PageRules.h"

class CProgressThread;
class CRunState;

// The procedures of the window's class and of its buttons: they pass on to the one object that there is.
LRESULT CALLBACK InstallerWndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ButtonWndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

struct FontPolicy {
    using Type = HFONT;
    static Type Empty() { return nullptr; }
    static bool Owns(Type value) { return value != nullptr; }
    static void Close(Type value) { Gdi32().DeleteObject(value); }
};
using CFont = COwner<FontPolicy>;

// Everything here belongs to the thread that made the window; the worker and the progress thread reach it by messages
// alone, which that thread answers while they wait. Two things are shared: the handle of the window itself (see
// WindowCalls.h) and that of the bar (see Threads.h).
class CInstallerWindow {
public:
    // The state of the run, with what the pages read and what their buttons set, and the bar's place. Both outlive the
    // object. Nothing of the window system is touched until Create().
    CInstallerWindow(CRunState &run, CProgressThread &progress) : mRun(run), mProgress(progress) {}
    ~CInstallerWindow() { Close(); }
    CInstallerWindow(const CInstallerWindow &) = delete;
    CInstallerWindow &operator=(const CInstallerWindow &) = delete;

    // Makes the window with its first page and shows it. Answers false, with a report, when that fails.
    bool Create(HINSTANCE instance, int showCommand);

    // Serves the window until it has closed.
    void RunMessageLoop();

    // Whether a worker is in the middle of its steps, as when somebody closes the window from outside. Nobody waits for
    // it: it ends with the process, wherever it is, and until then it uses the run.
    bool IsAtWork() const { return mWorkersBusy > 0; }

    // Teardown: the worker's handle, a window that still stands (which is reported), fonts, libraries.
    void Close();

    // What the two procedures do.
    LRESULT WndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT ButtonProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

private:
    // --- the window: InstallerWindow.cpp ---
    bool RegisterWindowClass() const;
    void OnCreate(HWND hwnd);
    void OnDestroy();
    void ReadMetrics(HWND hwnd);
    void FlashProgress(bool reset);

    // --- keyboard and mouse: WindowInput.cpp ---
    void OnCommand(WORD notification, int id);
    void OnKey(uint32_t key);
    void ScrollAgreement(const Scroll &scroll) const;
    void FocusButton() const;
    PageButtons Buttons() const;
    EControl IdOf(HWND button) const;

    // --- pages: Pages.cpp ---
    void Carry(HWND hwnd, const PageAction &action);
    void CreatePage(HWND hwnd, const PageKeys &keys);
    void CreateLicense(HWND hwnd);
    void CreateProgress(HWND hwnd);
    void ClearControls();
    void ShowEndPage(HWND hwnd);
    HWND MakeControl(HWND hwnd, const char *windowClass, const std::string &text, DWORD style,
                     const ControlPlace &place, int id, HFONT font) const;
    HWND MakeButton(HWND hwnd, const std::string &text, const ControlPlace &place, int id);
    HWND MakeAgreement(HWND hwnd, const ControlPlace &place) const;
    HWND &ButtonOf(int id);
    void FinishPage(HWND hwnd, const WindowSize &size) const;
    std::string Words(const char *key, const char *placeholder) const;

    CRunState &mRun;
    CProgressThread &mProgress;
    HINSTANCE mhInstance = nullptr;
    CLibrary mRichEdit20;
    CLibrary mRichEdit32;
    CHandle mWorkerThread;
    int mWorkersBusy = 0; // those that have not sent their last message

    PageMetrics mMetrics;
    CFont mTextFont;
    CFont mButtonFont;
    HWND mTextLabel = nullptr;  // text of the page; the upper one of the agreement's
    HWND mTextLabel2 = nullptr; // the lower one
    HWND mRichEdit = nullptr;
    HWND mButton129 = nullptr;
    HWND mButton130 = nullptr;
    HWND mButton131 = nullptr;
    HWND mButton132 = nullptr;
    HWND mFocusButton = nullptr; // stale between two pages
    WNDPROC mpButtonProc = nullptr;
    uint32_t mFlashCount = 0;
};

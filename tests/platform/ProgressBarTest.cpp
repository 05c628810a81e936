// What the interpreter and the creeping thread tell the progress bar. The bar is a window of the test that notes the
// positions it is sent.
#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

#include "Installer/CWinInstallMain.h"
#include "Installer/ScriptAccess.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

using Positions = std::vector<WPARAM>;

class ProgressBar : public testing::Test {
protected:
    // Runs the group and answers the positions that it sent on this thread: what the creeping thread sends would have
    // to wait for a message loop, which the test does not have.
    Positions Run(const std::string &steps, size_t *expectations_O = nullptr)
    {
        const std::string former = mConfigFile;
        mConfigFile = mScratch.Write("installer.dat", "[Install]\r\n" + steps);
        Positions positions;
        CWinInstallMain main("", false);
        const CTraceCapture capture;
        const HWND bar = CreateWindowA("STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        EXPECT_NE(bar, nullptr);
        SetWindowLongA(bar, GWL_USERDATA, reinterpret_cast<LONG>(&positions));
        SetWindowLongA(bar, GWL_WNDPROC, reinterpret_cast<LONG>(Procedure));
        main.mProgressBar = bar;
        main.RunSteps("Install");
        main.mProgressBar = nullptr;
        DestroyWindow(bar);
        mConfigFile = former;
        if (expectations_O != nullptr) {
            CTraceCapture &records = const_cast<CTraceCapture &>(capture);
            for (const std::string &record : records.Take()) {
                *expectations_O += record == "mBarValue <= PROGRESS_MAX" ? 1 : 0;
            }
        }
        return positions;
    }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == 0x402) { // PBM_SETPOS
            reinterpret_cast<Positions *>(GetWindowLongA(window, GWL_USERDATA))->push_back(wParam);
            return 0;
        }
        return DefWindowProcA(window, message, wParam, lParam);
    }

    CScratchFolder mScratch;
};

TEST_F(ProgressBar, EveryStepOfTheOutermostGroupCountsOne)
{
    EXPECT_EQ(Run(""), (Positions{0, 500}));
    EXPECT_EQ(Run("NULL\r\nNULL\r\nNULL\r\n"), (Positions{0, 125, 250, 375, 500}));
    EXPECT_EQ(Run("# dropped\r\nNULL\r\n"), (Positions{0, 250, 500}));
    // Inner groups do not count, and a bare call and an unknown word leave the bar to the next step.
    EXPECT_EQ(Run("!In!\r\nGoTo;!In!\r\nWord\r\n[In]\r\nNULL\r\nNULL\r\n"), (Positions{0, 250, 500}));
    EXPECT_EQ(Run("NULL\r\nGoTo;<x>\r\nNULL\r\n<x>NULL\r\n"), (Positions{0, 100, 200, 300, 500}));
    // DONE leaves the bar where it is.
    EXPECT_EQ(Run("NULL\r\nDONE\r\n"), (Positions{0, 166}));
}

TEST_F(ProgressBar, GoesPastItsEndWhenAGroupJumpsBackOften)
{
    size_t expectations = 0;
    EXPECT_EQ(Run("<x>CheckFlag;F;1;<y>\r\nSetFlag;F;1\r\nGoTo;<x>\r\n<y>NULL\r\n", &expectations),
              (Positions{0, 100, 200, 300, 400, 500, 500}));
    EXPECT_EQ(expectations, 0u);
    EXPECT_EQ(Run("<x>CheckFlag;G;1;<z>\r\nCheckFlag;F;1;<y>\r\nSetFlag;F;1\r\nGoTo;<x>\r\n<y>SetFlag;G;1\r\n"
                  "GoTo;<x>\r\n<z>NULL\r\n",
                  &expectations),
              (Positions{0, 62, 125, 187, 250, 312, 375, 437, 500, 562, 625, 500}));
    EXPECT_EQ(expectations, 2u);
}

} // namespace

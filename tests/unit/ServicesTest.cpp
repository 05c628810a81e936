// The decisions about services, user programs and preferences, on a machine that answers from a list and a clock that
// stands still.
#include <gtest/gtest.h>

#include <deque>
#include <sstream>

#include "Common/StringUtilities.h"
#include "Common/Trace.h"
#include "Services/PreferencePaths.h"
#include "Services/ServiceControl.h"
#include "Services/UserProcesses.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

// Of the records those that differ from the one before.
std::string Records()
{
    std::string text, last;
    for (const std::string &record : TakeTraceRecords()) {
        text += record != last ? "; " + record : "";
        last = record;
    }
    return text;
}

// One word a call: "ok", "!1056" for a failure with its error, "4/7/200" for a state with checkpoint and hint;
// "!1056*29" stands for as many. "@900" is what the clock says from here on.
class CListedService : public IServiceAccess {
public:
    explicit CListedService(const std::string &answers)
    {
        for (const std::string &word : SplitAny(answers, " ", true)) {
            const size_t star = word.find('*');
            mAnswers.insert(mAnswers.end(), star < word.size() ? std::stoul(word.substr(star + 1)) : 1,
                            word.substr(0, star));
        }
        mAnswers.push_back("!0 asked too often");
    }
    bool OpenManager() override { return Take(); }
    bool OpenNamed(const std::string &name) override { return mOpened = name, Take(); }
    bool RequestStop(ServiceStatus &status_O) override { return Take(&status_O); }
    bool RequestStart() override { return Take(); }
    bool Query(ServiceStatus &status_O) override { return Take(&status_O); }
    uint32_t TickCount() override
    {
        if (mAnswers.front()[0] == '@') {
            mNow = static_cast<uint32_t>(std::stoul(mAnswers.front().substr(1)));
            mAnswers.pop_front();
        }
        return mNow;
    }
    void Wait(uint32_t milliseconds) override
    {
        ++mWaitCount;
        mWaits += " " + std::to_string(milliseconds);
    }
    uint32_t Error() override { return mError; }
    void SetError(uint32_t error) override { mError = error; }

    // The result, how many waits and the first of them, the records, the error that stays, answers nobody asked for.
    std::string Outcome(bool result) const
    {
        return mOpened + YesNo(result) + (mWaitCount == 0 ? "" : " in " + std::to_string(mWaitCount) + ":") +
               mWaits.substr(0, 20) + Records() + (mError == 0 ? "" : ", " + std::to_string(mError)) +
               (mAnswers.size() == 1 ? "" : "; unasked " + mAnswers.front());
    }
    std::string mOpened;

private:
    bool Take(ServiceStatus *status_O = nullptr)
    {
        const std::string word = mAnswers.front();
        mAnswers.pop_front();
        char slash;
        if (word[0] == '!') {
            mError = static_cast<uint32_t>(std::stoul(word.substr(1)));
        } else if (status_O != nullptr) {
            std::istringstream numbers(word);
            numbers >> status_O->mState >> slash >> status_O->mCheckPoint >> slash >> status_O->mWaitHint;
        }
        return word[0] != '!';
    }

    std::deque<std::string> mAnswers;
    std::string mWaits;
    int mWaitCount = 0;
    uint32_t mNow = 0;
    uint32_t mError = 0;
};

TEST(Services, AStepWaitsAndForgives)
{
    ExpectTable("named-service", [](const std::string &row) {
        std::string outcomes[2];
        for (int level : {7, kDefaultDiagnosticLevel}) {
            SetDiagnosticLevel(level);
            CListedService service(row.substr(row.find(' ')));
            const bool result = ControlNamedService(service, row.back() == '-' ? "" : "Name", row[2] == 'o');
            service.mOpened.clear();
            outcomes[level == 7 ? 0 : 1] = service.Outcome(result);
        }
        const bool important = outcomes[0].find(';') != std::string::npos && outcomes[0] == outcomes[1];
        return outcomes[1] + (important ? ", level 3" : "");
    });
}

TEST(Services, ThatOfTheDriverHasToMakeProgress)
{
    ExpectTable("driver-service", [](const std::string &row) {
        CListedService service(row.substr(row.find(' ')));
        const int type = std::atoi(row.c_str() + 1);
        const auto nothing = [](IServiceAccess &) {};
        return service.Outcome(row[0] == '+'   ? StartDriverService(service, type)
                               : row[0] == '-' ? StopDriverService(service, type)
                                               : RunServiceAction(service, "", nothing, kServiceStopPending));
    });
}

// Lists "1c" of what runs at the beginning, behind the first wait, and so on; the last one stays. The three programs
// have the ids 1 to 3; one that is found but has ended when it is looked at is shown as a letter.
class CListedProcesses : public IUserProcessAccess {
public:
    explicit CListedProcesses(const std::string &lists) : mLists(SplitAny(lists, " ", true)) {}
    bool OpenNamedEvent(const std::string &name) override { return mCalls = name, !mLists.empty(); }
    void Signal() override { mCalls += " set"; }
    uint32_t FindProcess(EDriverSplitName name, int32_t) override
    {
        const uint32_t id = name == EDS_UDAName ? 1 : name == EDS_TouchName ? 2 : name == EDS_TabletName ? 3 : 9;
        mCalls += mWaits < 1 ? std::to_string(id) : "";
        return List().find_first_of({static_cast<char>('0' + id), static_cast<char>('`' + id)}) < 9 ? id : 0;
    }
    bool IsAlive(uint32_t id) override { return List().find(std::to_string(id)) != std::string::npos; }
    void Wait(uint32_t milliseconds) override { mWaits += milliseconds == 100 ? 1 : 1000; }

    std::string mCalls;
    size_t mWaits = 0;

private:
    const std::string &List() const { return mLists[std::min(mWaits, mLists.size() - 1)]; }
    std::vector<std::string> mLists;
};

TEST(UserProcesses, AreAwaitedForTenSeconds)
{
    ExpectTable("user-processes", [](const std::string &row) {
        CListedProcesses processes(row.substr(4));
        const int type = std::atoi(row.c_str() + 1);
        const bool result = row[0] == '+' ? StartUserProcesses(processes, type) : StopUserProcesses(processes, type);
        return YesNo(result) + (" in " + std::to_string(processes.mWaits)) + "; " + processes.mCalls + Records();
    });
}

std::wstring Wide(const std::string &text)
{
    return std::wstring(text.begin(), text.end());
}

TEST(UserProcesses, AreKnownByTheirFileNameInAnyCase)
{
    ExpectTable("process-names", [](const std::string &row) {
        const size_t is = row.find(" is ");
        const std::wstring entry = Wide(row.substr(0, is)), app = AppName(entry);
        return std::string(app.begin(), app.end()) + " " + YesNo(IsProcessNamed(entry, Wide(row.substr(is + 4))));
    });
}

TEST(Preferences, HaveOneBackSlashAtEachSeam)
{
    EXPECT_EQ(PreferencePlaces(L"\\\\s\\u\\\\", L"\\V\\a.dat")[3], L"\\\\s\\u\\AppData\\roaming\\V\\a.dat");
    EXPECT_EQ(PreferencePlaces(L"D:\\", L"\\V\\a.dat")[0], L"D:\\V\\a.dat");
}

} // namespace

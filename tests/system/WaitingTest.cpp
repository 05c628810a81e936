// Steps that wait for something outside.
#include <memory>

#include "Fixture.h"

TEST(Waiting, ACopyThatFindsNoPlaceTellsItOnceAndGoesOnWhenThereIsOne)
{
    Package package;
    package.File("new", "new").File("old", "old");
    auto source = std::make_unique<LockedFile>(package.Path("new"));
    const LockedFile target(package.Path("old"));
    ASSERT_TRUE(source->Held() && target.Held());
    const RegistrySnapshot pending(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Control\\Session Manager");
    RunningSetup run = package.Steps("CopyFile;new;old\nLog;behind").Start("/s");
    Sleep(2500); // several rounds of names, with a pause between two
    source.reset();
    const RunResult result = run.Wait();
    EXPECT_EQ(result.mExitCode, 2u);
    EXPECT_EQ(CountRecords(result, ", No place beside old, waiting for one 32"), 1u) << result.mTraceText;
    EXPECT_EQ(CountRecords(result, ", Reboot ol*, Move Yes *"), 1u);
    EXPECT_EQ(Logged(result), std::vector<std::string>{"behind"});
}

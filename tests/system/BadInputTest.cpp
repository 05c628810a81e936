// Foreign and broken input: the run ends with its code and its records, and never otherwise.
#include "Fixture.h"

namespace {

TEST(BadInput, ScriptsThatCannotBeRead)
{
    Package package;
    const std::string script = "CheckConfigFile(mConfigFile) == TVXSTATUS_SUCCESS";
    const std::string mismatch = "Version mismatch: exe-1.10.01, dat-";
    const auto expectRefused = [&](bool found, const char *what) {
        const RunResult run = package.Run();
        EXPECT_EQ(run.mExitCode, 1u) << what;
        EXPECT_EQ(run.mOutputFile, "1") << what;
        EXPECT_TRUE(Has(run, mismatch)) << what;
        EXPECT_EQ(CountRecords(run, script), found ? 0u : 1u) << what;
    };
    expectRefused(false, "missing");
    package.Steps("Log;x");
    {
        const LockedFile lock(package.Path("installer.dat"));
        ASSERT_TRUE(lock.Held());
        expectRefused(false, "locked");
    }
    package.File("installer.dat", "");
    expectRefused(true, "empty");
    package.File("installer.dat", std::string(5000, '\0'));
    expectRefused(true, "zeros");
    std::string binary;
    unsigned state = 1;
    for (int i = 0; i < 200000; ++i) {
        state = state * 1103515245u + 12345u;
        binary += static_cast<char>(state >> 16);
    }
    package.File("installer.dat", binary);
    expectRefused(true, "binary");
    package.File("installer.dat", "[MAIN");
    expectRefused(true, "an open section");
    package.File("installer.dat", std::string(100000, '['));
    expectRefused(true, "brackets");
}

TEST(BadInput, LargeScripts)
{
    // Ten megabytes, most of it a section that nobody reads.
    std::string ballast = "[Ballast]\r\n";
    while (ballast.size() < 10u * 1024 * 1024) {
        ballast += "Log;" + std::string(96, 'b') + "\r\n";
    }
    Package package;
    package.File("installer.dat", "[MAIN]\r\nVersion=1.10\r\nPrefType=Pen_Tablet\r\nLanguages=en\r\n[Install]\r\n"
                                  "Log;first\r\n" +
                                      ballast + "[Later]\r\n");
    const RunResult run = package.Run();
    EXPECT_EQ(run.mExitCode, 0u);
    EXPECT_TRUE(Has(run, "first"));
}

TEST(BadInput, LinesOf64Kilobytes)
{
    const std::string longText(64 * 1024, 'x');
    Package package;
    package.Script("[MAIN]\nVersion=1.10\nPrefType=Pen_Tablet\nLanguages=en\nDialogData=" + longText +
                   "\nInclude=" + longText + "\n[STATIC_FLAGS]\n" + longText + "=1\n[en]\nKey=" + longText +
                   "\n[Install]\nLog;first\n!Long!\nExistRedir;[^Key^]\nLog;last\n[Long]\nLog;" + longText + "\n");
    const RunResult run = package.Run();
    EXPECT_EQ(run.mExitCode, 0u);
    EXPECT_TRUE(HasInOrder(run, {"first", "Section Long is too large (10238)", "Instruction Log", "xxx*xxx", "last"}));
}

TEST(BadInput, NulAndHighBytesInAScript)
{
    static const char bytes[] =
        "[MAIN]\r\nVersion=1.10\r\nPrefType=Pen_Tablet\r\nLanguages=en\r\n[Install]\r\nLog;a\r\n"
        "Log;\x80\xFE\xFF\xC3\r\n\xFF\xFE;x\r\nLog;\x01\x02\x1F\r\nLog;end\r\nLog;b\0c\r\n";
    Package package;
    package.File("installer.dat", std::string(bytes, sizeof bytes - 1));
    const RunResult run = package.Run();
    EXPECT_EQ(run.mExitCode, 0u);
    EXPECT_TRUE(HasInOrder(run, {"a", "\x80\xFE\xFF\xC3", "Instruction \xFF\xFE", "\x01\x02\x1F", "end"}));
}

TEST(BadInput, StepsWithAbsurdFields)
{
    const RegistrySnapshot delayedMoves(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Control\\Session Manager");
    const std::string longPath(2000, 'p');
    for (const std::string &fields :
         {std::string(), std::string(";"), std::string(";;;;;;;;;;;;"), std::string(";!;^;!!;^^"),
          std::string(";%s%n%p;%s%n%p;%s%n%p"), std::string(R"(;\\\\;\\\\?\\;\\)"),
          std::string(";99999999999999999999;-99999999999999999999;4294967296"), std::string(";<|>;\"?*\""),
          std::string(";!X!;!X!"), ";" + longPath + ";" + longPath}) {
        std::string steps;
        std::string groups;
        // Commands that take whole folders away are left out: a broken one would take the tests' machine with it.
        for (const char *command :
             {"CopyFile",      "CopyFileIfNewer",     "CopyFileCustom", "CreateDir", "DeleteFile", "Exist", "NotExist",
              "IfNotOlder",    "CheckFlag",           "OSVersion",      "SetFlag",   "Command",    "GoTo",  "RegExist",
              "RegValueDWORD", "ProductIDIsAttached", "NoSuchWord",     "!X!",       "!X",         ""}) {
            // Each in a group of its own: some of them end their group.
            const std::string group = "G" + std::to_string(groups.size());
            steps += "!" + group + "!\n";
            groups += "[" + group + "]\n" + command + fields + "\n";
        }
        Package package;
        package.Steps(steps + "Log;end", groups);
        const RunResult run = package.Run();
        EXPECT_EQ(run.mOutputFile, std::to_string(run.mExitCode)) << fields;
        EXPECT_EQ(run.mExitCode & ~2u, 0u) << fields;
        EXPECT_EQ(Logged(run), std::vector<std::string>{"end"}) << fields;
    }
}

TEST(BadInput, CommandLines)
{
    Package package;
    package.Steps("Log;ran");
    const std::string path = package.Path("TavixSetup.exe");
    const size_t room = 32767 - path.size() - 10;
    for (const std::string &tail :
         {std::string(room, 'x'), std::string(room, '/'), std::string(room, '"'), std::string(room, '\\'),
          std::string(room, '-'), "\"" + std::string(room - 1, ' '), "L" + std::string(room - 1, '9'),
          "/command " + std::string(room - 9, 'g'), std::string("\x80\xFE\xFF %s%n\t\r\n")}) {
        const RunResult run = package.Run(tail);
        EXPECT_EQ(run.mExitCode, 0u) << tail.substr(0, 20);
        EXPECT_EQ(run.mOutputFile, "0") << tail.substr(0, 20);
        EXPECT_EQ(CountRecords(run, "ran"), tail[0] == '/' && tail[1] == 'c' ? 0u : 1u) << tail.substr(0, 20);
    }
}

TEST(BadInput, ResponseFiles)
{
    Package package;
    package.Steps("Log;ran");
    for (const std::string &content : {std::string(1000, '\0'), std::string(100000, '"'), std::string(1000, '\xFF'),
                                       std::string("/s\r\n"), std::string("\0/command x", 11)}) {
        package.InputResponse(content);
        const RunResult run = package.Run();
        EXPECT_EQ(run.mExitCode, 0u);
        EXPECT_TRUE(Has(run, "ran"));
        EXPECT_FALSE(FileExists(package.Temp("TavixInstallI.txt")));
    }
}

TEST(BadInput, SettingsOfWrongTypes)
{
    Settings settings;
    for (const char *name : {"ConfigFileName", "TraceFileName", "WorkingOverride", "LanguageOverride", "DummerTest",
                             "DiagnosticLevel", "InstallCommand", "SILENT", "INK", "Obs", "AllowOEM"}) {
        settings.Data(name, {REG_NONE, ""});
    }
    Package package;
    package.Steps("Log;ran");
    const RunResult run = package.Run();
    EXPECT_EQ(run.mOutputFile, std::to_string(run.mExitCode));
    EXPECT_TRUE(Has(run, "Resultcode=*"));
}

} // namespace

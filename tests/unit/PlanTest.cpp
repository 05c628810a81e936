// Plans of small scripts, as the text that people read.
#include <sstream>

#include <gtest/gtest.h>

#include "Pack/PlanCommand.h"
#include "Pack/Planner.h"
#include "TraceRecorder.h"

namespace {

class COneScript : public IScriptSource {
public:
    explicit COneScript(std::string text) : mText(std::move(text)) {}
    std::optional<std::string> ReadFile(const std::string &path) override
    {
        return path == ".\\installer.dat" ? std::optional<std::string>(mText) : std::nullopt;
    }

private:
    std::string mText;
};

// The lines of a plan between the machine's and the first empty one, and the last one.
std::string PlanLines(const std::string &steps, const PlanOptions &options = {})
{
    COneScript source("[MAIN]\nVersion=1.10\nPrefType=Pen_Tablet\n[Install]\n" + steps);
    CPackageTree tree;
    tree.AddFile("installer.dat");
    std::ostringstream out, errors;
    CPackConsole console{out, errors};
    WritePlanText(MakePlan(options, source, tree), console);
    TakeTraceRecords();
    const std::string text = out.str();
    const size_t from = text.find('\n') + 1, empty = text.find("\n\n"), last = text.rfind('\n', text.size() - 2) + 1;
    return "\n" + text.substr(from, empty + 1 - from) + text.substr(last);
}

TEST(PlanTest, CoursesMeetAndLeaveOpenWhatDiffersBehindThem)
{
    EXPECT_EQ(PlanLines("Exist;C:\\\\x;<there>\nSetFlag;A;1\nSetFlag;B;1\nGoTo;<on>\n<there>SetFlag;B;1\n"
                        "<on>CheckFlag;B;1;!G!\nCheckFlag;A;1;<DONE>\nCheckFlag;A;2;<DONE>\nLog;end\n[G]\nLog;g\n"),
              R"plan(
Install  installer.dat:4
  ?   5  Exist  C:\x  = not known
    if yes, <there>:
          9  SetFlag  B; 1
    if no:
          6  SetFlag  A; 1
          7  SetFlag  B; 1
          8  GoTo  = <on>
    both go on at line 10
     10  CheckFlag  B; 1  = yes, !G!  (B is 1)
      G  installer.dat:14
           15  Log  g
  ?  11  CheckFlag  A; 1  = not known
    if yes, <DONE>:
      nothing
    if no:
         12  CheckFlag  A; 2  = no  (A is 0)
         13  Log  end
    both go on at the end of the group
The run ends with exit code 0.
)plan");
}

TEST(PlanTest, WhatAStepHasDoneAnswersTheQuestionsBehindIt)
{
    EXPECT_EQ(
        PlanLines("CopyFile;.\\\\installer.dat;C:\\\\new\\\\a\nExist;C:\\\\new;<1>\n<1>DeleteFile;c:\\\\NEW\\\\a\n"
                  "Exist;C:\\\\new\\\\a;\nRegValueDWORDRedir;Software\\\\k;v;7\n"
                  "CheckRegDWORD;HKEY_LOCAL_MACHINE\\\\software\\\\K;V;7;<3>\n<3>RegValueStringRedir;Software\\\\k;@;\n"
                  "RegExist;Software\\\\k;v;\nSetRebootFlag\n"),
        R"plan(
Install  installer.dat:4
  +   5  CopyFile  .\installer.dat; C:\new\a
      6  Exist  C:\new  = yes, <1>
  +   7  DeleteFile  c:\NEW\a
      8  Exist  C:\new\a  = no
  +   9  RegValueDWORDRedir  HKLM\Software\k; v; 7
     10  CheckRegDWORD  HKLM\software\K; V; 7  = yes, <3>
  +  11  RegValueStringRedir  HKLM\Software\k; @  (deletes the key with all below it)
     12  RegExist  HKLM\Software\k; v  = no
  +  13  SetRebootFlag
The run ends with exit code 2.
)plan");
}

TEST(PlanTest, ARunWithoutAnEndAndALimitAreTold)
{
    const auto last = [](const std::string &lines) { return lines.substr(lines.rfind('\n', lines.size() - 2) + 1); };
    EXPECT_EQ(last(PlanLines("<a>Log;x\nGoTo;<a>\n")),
              "The run does not end: goes round from line 5 for ever, unless something else changes the machine.\n");
    EXPECT_EQ(last(PlanLines("!Install!;\n")), "The run does not end: groups call each other without end.\n");
    const std::string waits = PlanLines("<a>NotExist;C:\\\\x;<a>\nLog;there\n");
    EXPECT_NE(waits.find("      goes round from line 5 for ever"), std::string::npos) << waits;
    EXPECT_NE(waits.find("    the way of no goes on:\n      6  Log  there\n"), std::string::npos) << waits;
    PlanOptions few;
    few.mMostBranches = 1;
    const std::string cut = PlanLines("Exist;C:\\\\x;<1>\n<1>Exist;C:\\\\y;<2>\n<2>NULL\n", few);
    EXPECT_NE(cut.find("      6  Exist  C:\\y  = not known\n      7  NULL\n"), std::string::npos) << cut;
}

} // namespace

// What the two descriptions of a package come to, and what is written of it.
#include "Shell/ControlPanel.h"
#include "Shell/LinkData.h"
#include "Shell/TasksFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "Description.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

CTestTexts gTexts;

// The parts of a table's left side, with the elements that it writes in short; the last part may be missing.
std::vector<std::string> Parts(std::string left)
{
    static const char *const kShort[][2] = {
        {"ALL",
         "<Name>n</Name><Command r64='1'>c</Command><Parameters>p</Parameters><LinkName>l</LinkName><Description>d"
         "</Description><WorkingDir>w</WorkingDir><Hotkey>1</Hotkey><ShowCmd>2</ShowCmd><Icon index='3'>i</Icon>"},
        {"REF", "<Name useDll='1'>5</Name><Command>c</Command><LinkName>l</LinkName><Description>d</Description>"},
        {"GUID", "<CplGuid>{G}</CplGuid>"},
        {"TASK", "<CplLink id='t'>NC<Keywords>k</Keywords></CplLink>"},
        {"NC", "<Name>n</Name><Command>c</Command>"},
        {"O>", "StartMenuOrder>"},
        {"<K>", "<CplCategory id='2'>"},
        {"</K>", "</CplCategory>"},
        {"{/}", "</StartLink>"},
        {"{", "<StartLink id='"},
        {"}", "'>"},
        {"<StartLink id='G'>", "{G}"},
        {" + ", "\n"},
    };
    for (const auto &[from, to] : kShort) {
        for (size_t at = 0; (at = left.find(from, at)) != std::string::npos; at += std::string(to).size()) {
            left.replace(at, std::string(from).size(), to);
        }
    }
    std::istringstream lines(left);
    std::vector<std::string> parts(3);
    for (std::string &part : parts) {
        std::getline(lines, part);
    }
    return parts;
}

StartData Links(const std::string &left)
{
    const std::vector<std::string> parts = Parts(left);
    StartData start;
    ProcessLinkData(start, TestDocument(parts[0]).get(), "m.dll", parts[2], true, gTexts);
    ProcessLinkData(start, TestDocument(parts[1]).get(), "o.dll", parts[2], false, gTexts);
    return start;
}

// What differs from a fresh link.
std::string Dump(const LinkData &link)
{
    std::string text = (link.mVisible ? "" : "hidden ") + link.mName;
    for (const auto &[mark, value] :
         {std::pair(":", link.mCommand), std::pair(" P=", link.mParameters), std::pair(" D=", link.mDescription),
          std::pair(" L=", link.mLinkName), std::pair(" W=", link.mWorkingDir), std::pair(" I=", link.mIcon)}) {
        text += value.empty() ? "" : mark + value;
    }
    text += link.mRedirect ? " r64" : "";
    text += link.mIconIndex != -1 ? " #" + std::to_string(link.mIconIndex) : "";
    text += link.mHotkey != 0xFFFF ? " H=" + std::to_string(link.mHotkey) : "";
    return text + (link.mShowCmd != 1 ? " S=" + std::to_string(link.mShowCmd) : "");
}

TEST(LinkData, ShortcutsOfBothDocuments)
{
    ExpectTable("link-fields", [](const std::string &left) {
        return gTexts.AnsiToUtf8(Dump(Links("{a}" + left + "NC{/}").mLinks["a"]));
    });
    ExpectTable("links", [](const std::string &left) {
        std::string text;
        for (const auto &[id, link] : Links(left).mLinks) {
            text += (text.empty() ? "" : "; ") + id + ":" + Dump(link);
        }
        return text;
    });
    ExpectTable("link-order", [](const std::string &left) {
        std::string text;
        for (const std::string &id : Links("{c}NC{/}{b}NC{/}{a}NC{/}" + left).mOrder) {
            text += "," + id;
        }
        return text.substr(1);
    });
    ExpectTable("start-folder", [](const std::string &left) {
        const StartData start = Links(left);
        return start.mFolder + "," + start.mFolderN + "," + ShowOrHide(start.mVisible);
    });
    TakeTraceRecords();
}

TEST(LinkData, TraceOfADocument)
{
    Links("<StartFolder>f</StartFolder><O>a,b</O><StartLink id='a' visible='0'><Command r64='1'>c</Command>"
          "<Hotkey>171</Hotkey><Icon index='2'>i</Icon></StartLink>{b}text{/} + ");
    std::string records;
    for (const std::string &record : TakeTraceRecords()) {
        records += record + "\n";
    }
    EXPECT_EQ(records,
              "ProcessLinkData (Tavix) m.dll\nStartFolder f\nStartLink (a) hide\nLooking for Name node...\n"
              "Looking for Command node...\n, Command c redirect\nLooking for Parameters node...\n"
              "Looking for Description node...\nLooking for LinkName node...\nLooking for WorkingDir node...\n"
              "Looking for Hotkey node...\n, Hotkey AB\nLooking for ShowCmd node...\nLooking for Icon node...\n"
              ", Icon (2) i\nStartLink (b) show\n, StartMenuOrder a,b\nProcessLinkData (OEM) o.dll\n");
}

// What a shortcut is made of, from the link and its resolved texts.
TEST(LinkData, ShortcutOfALink)
{
    LinkData link;
    EXPECT_EQ(LinkFileName(link, "a 5.0"), "a 5.lnk");
    EXPECT_EQ(LinkFileName(link, "a.b.c") + LinkFileName(link, "a") + LinkFileName(link, ".x"), "a.b.lnka.lnk.lnk");
    link.mLinkName = "File";
    EXPECT_EQ(LinkFileName(link, "n"), "File.lnk");
    EXPECT_EQ(DescriptionOf(link, "n", "x"), "n");
    link.mDescription = "@d.dll,1";
    EXPECT_EQ(DescriptionOf(link, "n", "resolved") + DescriptionOf(link, "n", ""), "resolved@d.dll,1");
    EXPECT_EQ(HotkeyOf(link), 0);
    link.mHotkey = 0xFFFE;
    EXPECT_EQ(HotkeyOf(link), 0xFFFE);
    ExpectTable("link-icon", [&](const std::string &icon) {
        link.mIcon = icon;
        link.mIconIndex = 4;
        const LinkIcon made = IconOf(link, "cmd");
        return made.mFile + " " + std::to_string(made.mIndex);
    });
}

CplData Panel(const std::string &left)
{
    const std::vector<std::string> parts = Parts(left);
    CplData cpl;
    gTexts = CTestTexts();
    ProcessTaskData(cpl, TestDocument(parts[0]).get(), "m.dll", true, gTexts);
    ProcessTaskData(cpl, TestDocument(parts[1]).get(), "o.dll", false, gTexts);
    return cpl;
}

TEST(ControlPanel, EntryOfBothDocuments)
{
    ExpectTable("control-panel", [](const std::string &left) {
        const CplData cpl = Panel(left);
        const auto unless = [](const char *otherwise, const char *mark, const std::string &value) {
            return value != otherwise ? mark + value : "";
        };
        std::string text = cpl.mGuid + unless("", " N=", cpl.mName) + unless("", " T=", cpl.mTooltip) +
                           unless("Tavix.ControlPanel", " C=", cpl.mCanonicalName) +
                           unless("Tablet", " V=", cpl.mValueName) + unless("", " L=", cpl.mLocation);
        for (const auto &[id, task] : cpl.mLinks) {
            text += " " + id + "=" + task.mTaskGuid + "," + task.mName + "," + task.mKeywords + "," + task.mCommand +
                    (task.mVisible ? "" : ",hide");
        }
        for (const auto &[id, category] : cpl.mCategories) {
            text += " " + id + (category.mVisible ? "=" : "=hide,");
            for (const auto &entry : category.mEntries) {
                text += (&entry == category.mEntries.data() ? "" : ",") + entry.first;
            }
        }
        return text;
    });
    TakeTraceRecords();
}

TEST(ControlPanel, ValuesByPlatform)
{
    const CplData cpl = Panel("GUID<CplLocation>l</CplLocation> + ");
    for (const int osType : {20, 21, -1, 30, 40, 50, 51, 60, 61}) {
        const std::vector<CplValue> values = ControlPanelValues(cpl, "tasks.xml", osType);
        ASSERT_EQ(values.size(), osType >= 30 ? 10u : 9u) << osType;
        EXPECT_EQ(values[7].mName + values[7].mData,
                  osType >= 30 ? "System.Software.TasksFileUrltasks.xml" : "@l,-101");
    }
    // A value of no name and no text would take the key of all programs away.
    CplData nameless;
    for (const char *name : {"", "@"}) {
        nameless.mValueName = name;
        EXPECT_EQ(ControlPanelValues(nameless, "", 40)[0].mKey, kNameSpaceKey);
    }
    EXPECT_TRUE(HasOwnKeys("{G}") && !HasOwnKeys("") && !HasOwnKeys("\\\\"));
    TakeTraceRecords();
}

TEST(TasksFile, ByteForByte)
{
    CplData cpl =
        Panel("GUID<CplLink id='pen'><Name>Tips &amp; \xC3\xA4</Name><Keywords>tip;pen</Keywords>"
              "<Command>\"!DIR!\\p.exe\"</Command><Parameters>/tip</Parameters></CplLink>"
              "<CplLink id='map'><Name useDll='1'>12</Name><Keywords>-</Keywords><Command>c</Command></CplLink>"
              "<CplLink id='off' visible='0'>NC</CplLink><K>pen,off, map,</K>"
              "<CplCategory id='1'>map</CplCategory><CplCategory id='3' visible='0'>pen</CplCategory> + ");
    cpl.mCategories["1"].mEntries[0].second = "Own <name>";
    const std::string path = ::testing::TempDir() + "TasksFileTest.xml";
    EXPECT_EQ(CreateHotlinkXMLFile(path, cpl, gTexts), 1);
    std::ostringstream written;
    written << std::ifstream(path, std::ios::binary).rdbuf();
    EXPECT_EQ(written.str(), R"(<?xml version="1.0" encoding="UTF-8"?>
<applications xmlns="http://schemas.microsoft.com/windows/cpltasks/v1" xmlns:sh="http://schemas.microsoft.com/windows/tasks/v1">
	<application id="{G}">
		<sh:task id="{2}">
			<sh:name>@m.dll,-12</sh:name>
			<sh:command>c</sh:command>
		</sh:task>
		<sh:task id="{1}">
			<sh:name>Tips &amp; )"
                             "\xC3\xA4"
                             R"(</sh:name>
			<sh:keywords>tip;pen</sh:keywords>
			<sh:command>"C:\dir\p.exe" /tip</sh:command>
		</sh:task>
		<category id="1">
			<sh:task idref="{2}">Own &lt;name&gt;<sh:name>Own &lt;name&gt;</sh:name></sh:task>
		</category>
		<category id="2">
			<sh:task idref="{1}"/>
			<sh:task idref="{3}"/>
			<sh:task idref=""/>
			<sh:task idref=""/>
		</category>
	</application>
</applications>
)");
    std::remove(path.c_str());
    TakeTraceRecords();
}

} // namespace

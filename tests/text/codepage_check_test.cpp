#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/files.h"
#include "platform/launcher.h"
#include "platform/prompt.h"
#include "text/codepage_check.h"
#include "text/codepage_repair.h"
#include "text/load_driver.h"
#include "workbench/codepage_tools.h"

namespace korvex::text {
namespace {

using model::Store;
using platform::Answer;
using platform::ScriptedPrompt;

const std::string k_stars(40, '*');
// "Привет мир" in cp1251 and in UTF-8; "Café" in 1252 and in UTF-8.
const std::string k_privet_mir_1251 = "\xCF\xF0\xE8\xE2\xE5\xF2 \xEC\xE8\xF0";
const std::string k_privet_mir_utf8 = "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82 \xD0\xBC\xD0\xB8\xD1\x80";
const std::string k_cafe_1252 = "Caf\xE9";
const std::string k_cafe_utf8 = "Caf\xC3\xA9";

void add_labelled_polygon(Store& s, const std::string& strings, const std::string& label) {
    s.pg_txt.push_back("[_polygon]\r\nType=0x01\r\n" + strings + "Xpm=\"0 0 1 0\"\r\n\"1 c #FF0000\"\r\n");
    s.pg_lab.push_back(std::string("\0\0#", 3) + label);
    s.pg_n = static_cast<int32_t>(s.pg_txt.size());
}

TEST(Chkcp, MismatchAskedOrNotedAndUtf8NeverChecked) {
    Store s;
    s.codepage = 1252;
    s.opt.langid = 0x19;
    s.opt.langname = "Russian";
    const std::string text = "'Russian' (1251) of preferred language,' does not match codepage (1252)";

    ScriptedPrompt noted;
    EXPECT_FALSE(chkcp(s, noted, false));
    EXPECT_EQ(noted.messages, std::vector<std::string>{text});
    EXPECT_TRUE(noted.questions.empty());

    ScriptedPrompt asked;
    asked.script(Answer::no);
    asked.script(Answer::yes);
    EXPECT_FALSE(chkcp(s, asked, true));
    EXPECT_TRUE(chkcp(s, asked, true));
    EXPECT_EQ(asked.questions[0], "Check Codepage for " + text + "\r\nContinue anyway?");
    EXPECT_TRUE(asked.messages.empty());

    ScriptedPrompt quiet;
    s.codepage = 65001;
    EXPECT_TRUE(chkcp(s, quiet, true));
    s.codepage = 1251;
    EXPECT_TRUE(chkcp(s, quiet, true));
    s.opt.langid = 0;  // the unspecified language follows the file
    s.codepage = 1250;
    EXPECT_TRUE(chkcp(s, quiet, false));
    EXPECT_TRUE(quiet.messages.empty() && quiet.questions.empty());
}

TEST(Chkcp, TextLoadEndsWithTheNote) {
    Store s;
    s.opt.langid = 4;
    ScriptedPrompt ui;
    ASSERT_TRUE(load_txt(s, ui, "t.txt", "[_id]\r\nCodePage=1251\r\nFID=1\r\nProductCode=1\r\n[end]\r\n", false, true));
    ASSERT_FALSE(ui.messages.empty());
    EXPECT_EQ(ui.messages.back(), "'unspecified' (1252) of preferred language,' does not match codepage (1251)");
}

TEST(CorrectCp, Utf8In1252FileBecomesPageBytesOnlyWhereLeadByteStarts) {
    Store s;
    s.codepage = 1252;
    s.opt.langid = 4;
    add_labelled_polygon(s, "String1=0x00,Other " + k_cafe_utf8 + "\r\nString2=0x04," + k_cafe_utf8 + " au lait\r\n",
                         k_cafe_utf8 + " au lait");
    add_labelled_polygon(s, "String1=0x04,\xE9t\xE9 " + k_cafe_utf8 + "\r\n", "x");  // a real page character first
    add_labelled_polygon(s, "String1=0x00," + k_cafe_utf8 + "\r\n", k_cafe_utf8);  // no string of the language
    ScriptedPrompt ui;

    const CpRepair r = correct_cp(s, ui, model::k_polygons, k_repair_in_1252);
    EXPECT_TRUE(r.repaired);
    EXPECT_EQ(r.report, k_stars + "Polygons\r\nType=0x01 String2=0x04," + k_cafe_utf8 + " au lait\r\n");
    EXPECT_NE(s.pg_txt[0].find("String1=0x00,Other " + k_cafe_utf8 + "\r\nString2=0x04," + k_cafe_1252 +
                               " au lait\r\nXpm="),
              std::string::npos);
    EXPECT_EQ(s.pg_lab[0], std::string("\0\0#", 3) + k_cafe_1252 + " au lait");
    EXPECT_NE(s.pg_txt[1].find("=0x04,\xE9t\xE9 " + k_cafe_utf8), std::string::npos);
    EXPECT_NE(s.pg_txt[2].find("=0x00," + k_cafe_utf8), std::string::npos);
    EXPECT_EQ(ui.messages, std::vector<std::string>{"Codepage: 1252\r\nChecking: 0x04 unspecified"});

    const CpRepair again = correct_cp(s, ui, model::k_polygons, k_repair_in_1252);
    EXPECT_FALSE(again.repaired);
    EXPECT_EQ(again.report, k_stars + "Polygons\r\n");
}

TEST(CorrectCp, CyrillicUtf8In1252FileBecomes1251AndLabelFollows) {
    Store s;
    s.codepage = 1252;
    s.opt.langid = 0x19;
    s.ln_txt = {"[_line]\r\nType=0x01\r\nString1=0x19," + k_privet_mir_utf8 + "\r\n"};
    s.ln_lab = {"0x00100#" + k_privet_mir_utf8};
    s.ln_nact = 1;  // active lines are lines too
    ScriptedPrompt ui;

    const CpRepair r = correct_cp(s, ui, model::k_lines, k_repair_in_1252);
    EXPECT_TRUE(r.repaired);
    EXPECT_EQ(r.report, k_stars + "Lines\r\nType=0x01 String1=0x19," + k_privet_mir_utf8 + "\r\n");
    EXPECT_EQ(s.ln_txt[0], "[_line]\r\nType=0x01\r\nString1=0x19," + k_privet_mir_1251 + "\r\n");
    EXPECT_EQ(s.ln_lab[0], "0x00100#" + k_privet_mir_1251);
    EXPECT_TRUE(ui.messages.empty());  // the polygon pass alone names the page
}

TEST(CorrectCp, PageBytesInUtf8FileBecomeUtf8AndWellFormedUtf8Stays) {
    Store s;
    s.codepage = 65001;
    s.opt.list_codepage = 1252;
    s.pt_txt = {"[_point]\r\nType=0x2f\r\nSubType=0x01\r\nString1=0x00," + k_cafe_1252 + "\r\n",
                "[_point]\r\nType=0x2f\r\nString1=0x00,M\xC3\xBCller \xE2\x82\xAC 5\r\n",
                "[_point]\r\nType=0x30\r\nString1=0x00,\xC3 x\r\n"};  // a lead byte alone is let be
    s.pt_lab = {std::string("\0\0", 2) + "16x16 1 1\r\n2f01#'" + k_cafe_1252 + "'", "#", "#"};
    s.pt_n = 3;
    ScriptedPrompt ui;

    const CpRepair r = correct_cp(s, ui, model::k_points, k_repair_in_utf8);
    EXPECT_TRUE(r.repaired);
    EXPECT_EQ(r.report, k_stars + "Points\r\nType=0x2f String1=0x00," + k_cafe_1252 + "\r\n");
    EXPECT_EQ(s.pt_txt[0], "[_point]\r\nType=0x2f\r\nSubType=0x01\r\nString1=0x00," + k_cafe_utf8 + "\r\n");
    EXPECT_EQ(s.pt_lab[0], std::string("\0\0", 2) + "16x16 1 1\r\n2f01#'" + k_cafe_utf8 + "'");
    EXPECT_EQ(s.pt_txt[1], "[_point]\r\nType=0x2f\r\nString1=0x00,M\xC3\xBCller \xE2\x82\xAC 5\r\n");

    // Cyrillic page bytes make no UTF-8 even where no ASCII follows them.
    s.opt.langid = 0x19;
    s.pt_txt = {"[_point]\r\nType=0x2f\r\nString1=0x19,\xCF\xF0\xE8\xE2\xE5\xF2\r\n"};
    s.pt_n = 1;
    const CpRepair cyr = correct_cp(s, ui, model::k_points, k_repair_in_utf8);
    EXPECT_TRUE(cyr.repaired);
    EXPECT_EQ(s.pt_txt[0], "[_point]\r\nType=0x2f\r\nString1=0x19,\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82\r\n");
}

TEST(CodepageTools, RefuseOtherPagesAndReportRepairs) {
    const std::filesystem::path dir = std::filesystem::temp_directory_path() / "korvex-codepage-tools";
    std::filesystem::remove_all(dir);
    Store s;
    s.codepage = 1252;
    s.opt.langid = 4;
    add_labelled_polygon(s, "String1=0x04," + k_cafe_utf8 + "\r\n", k_cafe_utf8);
    platform::RecordingLauncher launcher;

    ScriptedPrompt refused;
    EXPECT_FALSE(workbench::check_labels_65001(s, refused, launcher, dir.string()));
    EXPECT_EQ(refused.messages, std::vector<std::string>{"Not codepage 65001"});

    ScriptedPrompt ui;
    EXPECT_TRUE(workbench::check_labels_1252(s, ui, launcher, dir.string()));
    EXPECT_EQ(ui.messages.back(), "Found & fixed errors.");
    EXPECT_TRUE(s.dirty);
    const std::string report = (dir / "system" / "cp1252").string();
    ASSERT_EQ(ui.reports.size(), 1u);
    EXPECT_EQ(ui.reports[0].title, "Check 1252 labels");
    EXPECT_TRUE(launcher.opened.empty());
    EXPECT_EQ(platform::read_file(report).value_or(""),
              k_stars + "Polygons\r\nType=0x01 String1=0x04," + k_cafe_utf8 + "\r\n" + k_stars + "Lines\r\n" +
                  k_stars + "Points\r\n");

    s.dirty = false;
    ScriptedPrompt clean;
    EXPECT_FALSE(workbench::check_labels_1252(s, clean, launcher, dir.string()));
    EXPECT_EQ(clean.messages.back(), "No errors found.");
    EXPECT_FALSE(s.dirty);
    EXPECT_TRUE(clean.reports.empty());
    EXPECT_EQ(platform::read_file(report).value_or(""), k_stars + "Polygons\r\n" + k_stars + "Lines\r\n" + k_stars + "Points\r\n");

    s.codepage = 65001;
    ScriptedPrompt not1252;
    EXPECT_FALSE(workbench::check_labels_1252(s, not1252, launcher, dir.string()));
    EXPECT_EQ(not1252.messages, std::vector<std::string>{"Not codepage 1252"});
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace korvex::text

// Copy, paste, Create Copy and paste_act: the clipboard form, the refusals
// and what a paste does to the tables.
#include <gtest/gtest.h>

#include "ops_fixture.h"
#include "workbench/clip_form.h"
#include "workbench/type_key.h"

namespace korvex::workbench {
namespace {

using platform::Answer;
using test::OpsFixture;

const std::string k_polygons = "[_drawOrder]\r\nType=0x03,1\r\nType=0x05,2\r\n[end]\r\n" + test::polygon("0x03", "Three") +
                               test::polygon("0x05", "Five", "00FF00");

TEST(ClipForm, OneElementIsMarkerTypeDrawOrderAndSection) {
    OpsFixture f;
    f.load(k_polygons);
    const std::string code = get_code(f.s, model::k_polygons, 1);
    EXPECT_EQ(code.substr(0, code.find("[_polygon]")), "krv0\r\n00500\r\nType=0005,2\r\n");
    EXPECT_NE(code.find("String1=0x04,Five\r\n"), std::string::npos);
    EXPECT_EQ(code.substr(code.size() - 7), "[end]\r\n");

    const Clip clip = read_clip(code);
    EXPECT_TRUE(clip.marked);
    ASSERT_EQ(clip.sections.size(), 1u);
    EXPECT_EQ(clip.sections[0].cls, model::k_polygons);
    EXPECT_EQ(clip.sections[0].code, 0x500);
    EXPECT_EQ(clip.sections[0].levels, std::vector<int>{2});
}

TEST(ClipForm, PlainTextSectionsReadWithLineFeedsAndAMissingEnd) {
    const Clip clip = read_clip("[_drawOrder]\nType=0x4B00,3\n[end]\n[_polygon]\nType=0x4b\nXpm=\"0 0 1 0\"\n"
                                "[_line]\nType=0x01\nActivity=Hiking\n[end]\n");
    ASSERT_EQ(clip.sections.size(), 2u);
    EXPECT_FALSE(clip.marked);
    EXPECT_EQ(clip.sections[0].levels, std::vector<int>{3});  // from the pasted draw order
    EXPECT_NE(clip.sections[0].section.find("[end]\r\n"), std::string::npos);
    EXPECT_EQ(clip.sections[1].cls, model::k_active_lines);  // an Activity= makes it active
    EXPECT_EQ(std::string(class_plural(clip.sections[1].cls)), "Active Routing");
}

TEST(ClipForm, ATypeInTwoLayersAndALineWithItsOldWidthInAComment) {
    OpsFixture f;
    f.load(test::polygon("0x03", "Three"));
    f.s.drwlist = " 0003,1 0003,4";  // as a TYP file may have it
    const std::string code = get_code(f.s, model::k_polygons, 0);
    EXPECT_NE(code.find("Type=0003,1\r\nType=0003,4\r\n[_polygon]"), std::string::npos);
    f.ops.mcopy({0});
    f.load("");
    ASSERT_EQ(f.ops.mpaste(), 0);
    EXPECT_EQ(f.s.drwlist, " 0003,1 0003,4");

    // A commented width is no width: the rows of the bitmap come along.
    f.load("[_line]\r\nType=0x20\r\n; LineWidth=1\r\nXpm=\"32 2 2 1\"\r\n\"! c #C0803F\"\r\n\"  c none\"\r\n"
           "\"    !!!!!!!!!!!!    !!!!!!!!!!!!\"\r\n\"    !!!!!!!!!!!!    !!!!!!!!!!!!\"\r\n[end]\r\n",
           model::k_lines);
    const std::string line = get_code(f.s, model::k_lines, 0);
    EXPECT_NE(line.find("\"11110000000000001111000000000000\""), std::string::npos) << line;
}

TEST(Copy, SelectedElementsGoToTheClipboardAsUnicodeInListOrder) {
    OpsFixture f;
    f.load(k_polygons + test::polygon("0x07", "B\xE4" "ckerei"));
    EXPECT_TRUE(f.ops.mcopy({2, 0}));
    const std::string c = f.clip.unicode_text();
    EXPECT_EQ(c.find("krv0"), 0u);
    EXPECT_LT(c.find("Type=0x07\r"), c.find("Type=0x03\r"));
    EXPECT_NE(c.find("B\xC3\xA4" "ckerei"), std::string::npos);  // the label as UTF-8
    f.s.curclass = model::k_extra_points;
    EXPECT_FALSE(f.ops.mcopy({0}));  // extra points have no text form to copy
}

TEST(Paste, RefusalsSayWhyAndChangeNothing) {
    OpsFixture f;
    f.load(k_polygons);
    const std::string before = f.text();
    struct Case {
        std::string clip;
        bool layers;
        std::string said;
    };
    const Case cases[] = {
        {"hello", false, "No element to paste"},
        {"krv0 and nothing else", false, "Text corrupted"},
        {test::line("0x01", "l"), false, "Change to Lines ."},
        {"krv2\r\n" + test::point("0x2f05", "p"), false, "Change to Points ."},
        {test::line("0x01", "l", "Activity=Walking\r\n"), false, "Change to Active Routing ."},
        {"[_polygon]\r\nString1=0x04,no type\r\n[end]\r\n", false, "Text corrupted"},
        {test::polygon("0x09", "n"), true, "Return to polygon display first"},
    };
    for (const Case& c : cases) {
        f.ui.messages.clear();
        f.clip.set_text(c.clip);
        f.host.layers = c.layers;
        EXPECT_EQ(f.ops.mpaste(), -1) << c.said;
        ASSERT_EQ(f.ui.messages.size(), 1u) << c.said;
        EXPECT_EQ(f.ui.messages[0], c.said);
    }
    EXPECT_EQ(f.text(), before);
    EXPECT_FALSE(f.s.dirty);
    EXPECT_EQ(f.host.changes, 0);
}

TEST(Paste, ANewPolygonTakesItsPlaceAndTheLevelOfItsNote) {
    OpsFixture f;
    f.load(k_polygons);
    f.clip.set_unicode_text("krv0\r\n00400\r\nType=0004,7\r\n" + test::polygon("0x04", "Vier"));
    EXPECT_EQ(f.ops.mpaste(), 1);
    EXPECT_EQ(f.s.pg_n, 2 + 1);
    EXPECT_EQ(f.s.pg_ni, 3);
    EXPECT_EQ(f.s.pg_typ[1], "0x0400");
    EXPECT_EQ(f.s.pg_drw[1], "Type=0004,7");
    EXPECT_NE(f.s.drwlist.find("0004,7"), std::string::npos);
    EXPECT_EQ(f.host.current, 1);
    EXPECT_TRUE(f.s.dirty);
    // Without a note the type's standing level, else level 1.
    f.clip.set_text(test::polygon("0x06", "Sechs"));
    EXPECT_EQ(f.ops.mpaste3(), 3);
    EXPECT_EQ(f.s.pg_drw[3], "Type=0006,1");
    // Two sections of one new type: the first makes the row, the second asks.
    f.ui.script(Answer::yes);
    f.clip.set_text(test::polygon("0x08", "Acht") + test::polygon("0x08", "Otto"));
    EXPECT_EQ(f.ops.mpaste3(), 4);
    EXPECT_EQ(f.s.pg_n, 5);
    EXPECT_EQ(f.ui.questions, std::vector<std::string>{"0x00800 exists.\r\n\r\nReplace ?"});
    EXPECT_EQ(f.s.pg_lab[4].substr(3), "'Otto'");
}

TEST(Paste, AnExistingTypeIsReplacedOnlyOnYes) {
    OpsFixture f;
    f.load(k_polygons);
    f.ui.script(Answer::no);
    f.ui.script(Answer::yes);
    f.clip.set_text(test::polygon("0x03", "New three") + test::polygon("0x05", "New five"));
    EXPECT_EQ(f.ops.mpaste(), 1);
    EXPECT_EQ(f.s.pg_n, 2);
    ASSERT_EQ(f.ui.questions.size(), 2u);
    EXPECT_EQ(f.ui.questions[0], "0x00300 exists.\r\n\r\nReplace ?");
    EXPECT_EQ(f.s.pg_lab[0].substr(3), "'Three'");
    EXPECT_EQ(f.s.pg_lab[1].substr(3), "'New five'");
    EXPECT_EQ(f.s.pg_drw[1], "Type=0005,2");  // no note: the layer stays
    ASSERT_EQ(f.ui.messages.size(), 1u);
    EXPECT_EQ(f.ui.messages[0], "Not replaced:\r\n0x00300\r\n");
}

TEST(Paste, StringsOfAUnicodeClipboardGoBackToTheirPage) {
    OpsFixture f;
    f.load("");
    f.s.curclass = model::k_points;
    f.clip.set_unicode_text(test::point("0x2f05", "B\xC3\xA4" "ckerei"));
    ASSERT_EQ(f.ops.mpasteu8(), 0);
    EXPECT_NE(f.s.pt_txt[0].find("B\xE4" "ckerei"), std::string::npos);
    // A copy and a paste give the element back as it was.
    f.load(k_polygons + test::polygon("0x07", "B\xE4" "ckerei"));
    const std::string before = f.s.pg_txt[2];
    f.ops.mcopy({2});
    f.load(k_polygons);
    ASSERT_EQ(f.ops.mpaste(), 2);
    EXPECT_EQ(f.s.pg_txt[2], before);
}

TEST(Paste, LinesGoInFrontOfActiveLinesAndPointsInFrontOfExtraPoints) {
    OpsFixture f;
    f.load(test::line("0x03", "l3") + test::line("0x100", "w", "Activity=Walking\r\n"), model::k_lines);
    f.clip.set_text(test::line("0x01", "l1"));
    EXPECT_EQ(f.ops.mpaste(), 0);
    EXPECT_EQ(f.s.ln_n, 2);
    EXPECT_EQ(f.s.ln_nact, 1);
    EXPECT_EQ(f.s.ln_act[2], "40");
    EXPECT_EQ(f.s.ln_act[0], "");

    // An active line without an activity gets Walking (40).
    f.s.curclass = model::k_active_lines;
    f.clip.set_text("krv3\r\n" + test::line("0x200", "x"));
    EXPECT_EQ(f.ops.mpaste(), 3);
    EXPECT_EQ(f.s.ln_nact, 2);
    EXPECT_EQ(f.s.ln_act[3], "40");
    EXPECT_NE(f.s.ln_txt[3].find("Activity=Walking"), std::string::npos);
}

TEST(Paste, ActOntoAnotherActivityReplacesThatLine) {
    OpsFixture f;
    f.load(test::line("0x100", "w", "Activity=Walking\r\n") + test::line("0x100", "m", "Activity=Mountaineering\r\n"),
           model::k_active_lines);
    ASSERT_EQ(f.s.ln_nact, 2);
    f.ops.mcopy({0});
    // The third activity, Mountaineering, is code 0x42.
    EXPECT_EQ(activity_of_index(2), "42");
    EXPECT_EQ(f.ops.paste_act(1), 1);
    EXPECT_EQ(f.s.ln_nact, 2);
    EXPECT_EQ(f.s.ln_act[1], "42");
    EXPECT_EQ(f.s.ln_lab[1].substr(f.s.ln_lab[1].find('#') + 1), "'w'");
    ASSERT_EQ(f.ui.questions.size(), 1u);  // "... exists. Replace ?"
}

TEST(CreateCopy, TakesTheNextFreeNumberAndKeepsTheLevel) {
    OpsFixture f;
    f.load(k_polygons);
    f.settings.polygon_seed = "00300";
    // 3 and 5 are taken: the next free is 4; the copy of 5 keeps level 2.
    EXPECT_EQ(f.ops.mcreatecopy(1), 1);
    EXPECT_EQ(f.s.pg_typ[1], "0x0400");
    EXPECT_EQ(f.s.pg_lab[1].substr(3), "'Five'");
    EXPECT_EQ(f.s.pg_drw[1], "Type=0004,2");
    EXPECT_TRUE(f.ui.questions.empty());
    // As a subtype of its own type: a type below 0x100 with a subtype has no level.
    EXPECT_EQ(f.ops.mcreatecopy(0, 3), 1);
    EXPECT_EQ(f.s.pg_typ[1], "0x0303");
    EXPECT_EQ(f.s.pg_drw[1], "Type=0303,0");
    EXPECT_EQ(f.ops.mcreatecopy(0, 3), -1);
    EXPECT_EQ(f.ui.messages.back(), "Type exists.");
    // No free number: the catalogue's words, nothing made.
    f.settings.polygon_seed = "08000";
    const int32_t n = f.s.pg_n;
    EXPECT_EQ(f.ops.mcreatecopy(0), -1);
    EXPECT_EQ(f.ui.messages.back(), f.msgs.get_msg(219));
    EXPECT_EQ(f.s.pg_n, n);
}

TEST(CreateCopy, PointsWalkFromThePointSeed) {
    OpsFixture f;
    f.load(test::point("0x6000", "a"), model::k_points);
    EXPECT_EQ(f.ops.mcreatecopy(0), 1);
    EXPECT_EQ(f.s.pt_typ[1], "06001");
    EXPECT_EQ(f.s.pt_bmp[1], f.s.pt_bmp[0]);
}

TEST(Paste, NothingRunsDuringALoad) {
    OpsFixture f;
    f.load(k_polygons);
    f.host.busy = true;
    f.clip.set_text(test::polygon("0x09", "n"));
    EXPECT_EQ(f.ops.mpaste(), -1);
    EXPECT_FALSE(f.ops.mcopy({0}));
    EXPECT_EQ(f.ops.mcreatecopy(0), -1);
    EXPECT_EQ(f.s.pg_n, 2);
}

}  // namespace
}  // namespace korvex::workbench

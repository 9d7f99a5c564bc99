// New elements of every class, Delete, and renumbering.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "editor/editor_apply.h"
#include "editor/element_open.h"
#include "ops_fixture.h"
#include "text/panel_apply.h"
#include "workbench/type_key.h"

namespace korvex::workbench {
namespace {

using platform::Answer;
using test::OpsFixture;

const std::string k_polygons_one_three = "[_drawOrder]\r\nType=0x01,1\r\nType=0x03,2\r\nType=0x04,3\r\n[end]\r\n" +
                                         test::polygon("0x01", "One") + test::polygon("0x03", "Three");

bool accept(NewElementForm&) { return true; }

TEST(NewElement, PolygonTakesTheNextNumberTheDialogsLevelAndItsPlace) {
    OpsFixture f;
    f.load(k_polygons_one_three, model::k_points);
    f.dialogs.on_poisizes = [](NewElementForm& form) {
        form.level = 5;
        form.text = "W\xC3\xA4ldchen";
        return true;
    };
    EXPECT_EQ(f.ops.new_element(model::k_polygons), 1);
    EXPECT_EQ(f.host.classes_shown, std::vector<int>{model::k_polygons});
    ASSERT_EQ(f.dialogs.shown.size(), 1u);
    EXPECT_EQ(f.dialogs.shown[0].type, "00200");
    EXPECT_EQ(f.s.pg_n, 3);
    EXPECT_EQ(f.s.pg_typ[1], "0x0200");
    EXPECT_EQ(f.s.pg_drw[1], "Type=0002,5");
    EXPECT_NE(f.s.drwlist.find("0002,5"), std::string::npos);
    EXPECT_EQ(f.s.pg_lab[1].substr(3), "'W\xE4ldchen'");  // a 1252 project keeps it as its page's bytes
    EXPECT_EQ(f.s.pg_xpm[1], "Xpm=\"32 32 2 1\"");
    EXPECT_EQ(f.ops.standing_level(), 5);
    EXPECT_EQ(f.host.current, 1);

    // The next one: 4 has a draw order but no polygon, which is asked about.
    f.settings.polygon_seed = "00400";
    f.ui.script(Answer::no);
    EXPECT_EQ(f.ops.new_element(model::k_polygons), -1);
    EXPECT_EQ(f.ui.questions.back(), "An empty draworder exists for 00400. Continue?");
    EXPECT_EQ(f.s.pg_n, 3);

    // Type 0x100 takes no level: the dialog's goes, with a word, and stays standing.
    f.settings.polygon_seed = "10000";
    const int32_t row = f.ops.new_element(model::k_polygons);
    ASSERT_GE(row, 0);
    ASSERT_FALSE(f.ui.messages.empty());
    EXPECT_EQ(f.ui.messages.back(), "Polygons &100 do not have draworders.");
    EXPECT_EQ(f.s.pg_typ[static_cast<size_t>(row)], "0x10000");
    EXPECT_EQ(f.s.drwlist.find("10000"), std::string::npos);
    EXPECT_EQ(f.ops.standing_level(), 5);
}

TEST(NewElement, RefusedAndCancelledFormsChangeNothing) {
    OpsFixture f;
    f.load(k_polygons_one_three);
    const std::string before = f.text();
    EXPECT_EQ(f.ops.new_element(model::k_polygons), -1);  // cancelled
    f.dialogs.on_poisizes = [](NewElementForm& form) {
        form.level = 256;
        return true;
    };
    EXPECT_EQ(f.ops.new_element(model::k_polygons), -1);
    EXPECT_EQ(f.ui.messages.back(), "Draworder < 256 ");
    f.dialogs.on_poisizes = [](NewElementForm& form) {
        form.type = "0x0300";
        return true;
    };
    EXPECT_EQ(f.ops.new_element(model::k_polygons), -1);
    EXPECT_EQ(f.ui.messages.back(), "Type exists.\r\nPolygon.");
    f.dialogs.on_poisizes = [](NewElementForm& form) {
        form.type = "08000";
        return true;
    };
    EXPECT_EQ(f.ops.new_element(model::k_polygons), -1);
    EXPECT_EQ(f.ui.messages.back(), "Invalid type.\r\nPolygon.");
    EXPECT_EQ(f.ui.messages[f.ui.messages.size() - 2], "Select range: 1 - 7F or 100 - 17F");
    f.settings.polygon_seed = "08000";
    EXPECT_EQ(f.ops.new_element(model::k_polygons), -1);
    EXPECT_EQ(f.ui.messages.back(), f.msgs.get_msg(219));
    EXPECT_EQ(f.text(), before);
    EXPECT_FALSE(f.s.dirty);
}

TEST(NewElement, BesideTheLayersThePolygonsTypeIsTypedNotProposed) {
    OpsFixture f;
    f.load(k_polygons_one_three, model::k_polygons);
    f.host.layers = true;
    f.dialogs.on_poisizes = [](NewElementForm&) { return true; };
    EXPECT_EQ(f.ops.new_element(model::k_polygons), -1);
    EXPECT_EQ(f.dialogs.shown.back().type, "");
    EXPECT_EQ(f.ui.messages.back(), "Invalid type.\r\nPolygon.");
    EXPECT_EQ(f.s.pg_n, 2);
    f.dialogs.on_poisizes = [](NewElementForm& form) {
        form.type = "0x10f00";
        return true;
    };
    const int32_t row = f.ops.new_element(model::k_polygons);
    ASSERT_EQ(row, 2);
    EXPECT_EQ(type_code(f.s.pg_typ[2]), 0x10f00);
}

TEST(NewElement, FormChecksOfEveryClass) {
    OpsFixture f;
    f.load(test::point("0x2f05", "p"));
    NewElementForm p;
    p.cls = model::k_polygons;
    p.type = "00200";
    p.level = 255;
    EXPECT_TRUE(check_form(f.s, p, f.msgs).empty());
    p.type = "2g";
    EXPECT_EQ(check_form(f.s, p, f.msgs), std::vector<std::string>{"Invalid type.\r\nPolygon."});
    p.type = "0010051";
    EXPECT_EQ(check_form(f.s, p, f.msgs), std::vector<std::string>{"Invalid type.\r\nPolygon."});
    NewElementForm pt;
    pt.cls = model::k_points;
    pt.type = "02f05";
    EXPECT_EQ(check_form(f.s, pt, f.msgs).back(), "Type exists.\r\nPOI.");
    pt.type = "02f06";
    pt.width = 129;
    EXPECT_EQ(check_form(f.s, pt, f.msgs), std::vector<std::string>{f.msgs.get_msg(63)});
    pt.width = 128;
    pt.type = "0x20000";
    EXPECT_EQ(check_form(f.s, pt, f.msgs).front(), "Select range: 1 - 1FF ");
    NewElementForm x;
    x.cls = model::k_extra_points;
    const std::pair<std::string, std::string> ids[] = {
        {"", "ID?"}, {"12g", "ID not valid"}, {"10000", "4 bytes only"}, {"0", "ID not valid"}, {"0000ffff", ""}};
    for (const auto& [id, said] : ids) {
        x.type = id;
        const auto r = check_form(f.s, x, f.msgs);
        EXPECT_EQ(r.empty() ? std::string() : r[0], said) << id;
    }
    x.hex = false;
    x.type = "65536";
    EXPECT_EQ(check_form(f.s, x, f.msgs), std::vector<std::string>{"Too large"});
}

TEST(NewElement, PointIsAPictureOfTheDefaultColoursWithANightForm) {
    OpsFixture f;
    f.load(test::point("0x6000", "a") + test::point("0x6001", "b"), model::k_points);
    f.settings.icon_colour1 = 0x0000FF;  // red, in the settings' byte order
    f.settings.icon_colour2 = 0xFF0000;  // blue
    f.dialogs.on_poisizes = [](NewElementForm& form) {
        form.width = 3;
        form.height = 2;
        form.night = true;
        return true;
    };
    EXPECT_EQ(f.ops.new_element(model::k_points), 2);
    EXPECT_EQ(f.dialogs.shown[0].type, "06002");
    EXPECT_EQ(f.dialogs.shown[0].width, 32);
    EXPECT_EQ(f.s.pt_n, 3);
    EXPECT_EQ(f.s.pt_typ[2], "06002");
    EXPECT_NE(f.s.pt_txt[2].find("\"$ c #FF0000\""), std::string::npos);
    EXPECT_NE(f.s.pt_txt[2].find("\"% c #0000FF\""), std::string::npos);
    EXPECT_FALSE(f.s.pt_nbmp[2].empty());
    EXPECT_EQ(std::count(f.s.pt_bmp[2].begin(), f.s.pt_bmp[2].end(), '\n'), 2);
}

TEST(NewElement, LineAndActiveLines) {
    OpsFixture f;
    f.load(test::line("0x01", "a"), model::k_lines);
    f.dialogs.on_line = accept;
    EXPECT_EQ(f.ops.new_element(model::k_lines), 1);
    EXPECT_EQ(f.s.ln_code[1], 0x200);
    EXPECT_EQ(f.s.ln_wid[1], 3);
    EXPECT_EQ(f.s.ln_act[1], "");

    // Active Routing with none yet: six default activities when wanted.
    EXPECT_LT(f.s.hdr_len, 174);
    f.ui.script(Answer::yes);
    EXPECT_EQ(f.ops.new_element(model::k_active_lines), 2);
    EXPECT_EQ(f.ui.questions.back(), "Create 6 default activities?");
    ASSERT_EQ(f.s.ln_nact, 6);
    const char* acts[] = {"40", "50", "41", "51", "42", "52"};
    for (int k = 0; k < 6; ++k) EXPECT_EQ(f.s.ln_act[static_cast<size_t>(2 + k)], acts[k]);
    EXPECT_EQ(f.s.hdr_len, 174);
    EXPECT_EQ(f.ui.messages.back(), "Header reset to &AE");

    // Another active line: the dialog's activity, and a pair that exists is refused.
    f.dialogs.on_line = [](NewElementForm& form) {
        form.type = "00100";
        form.activity = 4;
        return true;
    };
    EXPECT_EQ(f.ops.new_element(model::k_active_lines), -1);
    EXPECT_EQ(f.ui.messages.back(), "Type exists.\r\nLine.");
    f.dialogs.on_line = [](NewElementForm& form) {
        form.activity = 4;
        return true;
    };
    EXPECT_EQ(f.ops.new_element(model::k_active_lines), 8);
    EXPECT_EQ(f.s.ln_act[8], "51");
    EXPECT_EQ(f.dialogs.shown.back().activities.size(), 6u);
    EXPECT_EQ(f.dialogs.shown.back().line_types.size(), 2u);
}

TEST(NewElement, ExtraPointRaisesTheHeaderAndTakesTheNextId) {
    OpsFixture f;
    f.load(test::point("0x2f05", "p"), model::k_extra_points);
    f.dialogs.on_poisizes = accept;
    EXPECT_EQ(f.ops.new_element(model::k_extra_points), 1);
    EXPECT_EQ(f.dialogs.shown[0].type, "1");
    EXPECT_EQ(f.s.pt_nx, 1);
    EXPECT_EQ(f.s.pt_typ[1], "00001");
    EXPECT_EQ(f.s.hdr_len, 164);
    // A new base point goes in front of the extra point.
    f.dialogs.on_poisizes = accept;
    EXPECT_EQ(f.ops.new_element(model::k_points), 1);
    EXPECT_EQ(f.s.pt_n, 2);
    EXPECT_EQ(f.s.pt_typ[2], "00001");
}

TEST(Delete, AsksFirstAndRemovesFromTheEndOfTheSelection) {
    OpsFixture f;
    f.load(k_polygons_one_three + test::polygon("0x04", "Four") + test::polygon("0x05", "Five"));
    const std::string before = f.text();
    f.ui.script(Answer::no);
    EXPECT_FALSE(f.ops.mdelete({1}));
    f.ui.script(Answer::cancel);
    EXPECT_FALSE(f.ops.mdelete({1}));
    EXPECT_EQ(f.ui.questions.back(), "Reload TYP file to undo changes.\r\n\r\nContinue?");
    EXPECT_EQ(f.text(), before);

    EXPECT_TRUE(f.ops.mdelete({3, 1, 3}));
    EXPECT_EQ(f.s.pg_n, 2);
    EXPECT_EQ(f.s.pg_ni, 2);
    EXPECT_EQ(f.s.pg_typ[0], "0x0100");
    EXPECT_EQ(f.s.pg_typ[1], "0x0400");
    EXPECT_EQ(f.s.pg_drw[1], "Type=0004,3");
    EXPECT_EQ(f.s.drwlist.find("0003,"), std::string::npos);  // its entry went with it
    EXPECT_EQ(f.host.log, (std::vector<std::string>{"deleting:0x00300", "deleting:0x00500"}));
    EXPECT_EQ(f.host.current, 1);
    EXPECT_TRUE(f.s.dirty);
}

TEST(Delete, TheOnlyElementAndEveryClass) {
    OpsFixture f;
    f.load(test::polygon("0x01", "One"));
    EXPECT_TRUE(f.ops.mdelete({0}));
    EXPECT_EQ(f.s.pg_n, 0);
    EXPECT_EQ(f.host.current, -1);
    EXPECT_FALSE(f.ops.mdelete({0}));  // an empty class asks nothing

    f.load(test::line("0x01", "a") + test::line("0x02", "b") + test::line("0x100", "w", "Activity=Walking\r\n"),
           model::k_lines);
    EXPECT_TRUE(f.ops.mdelete({0}));
    EXPECT_EQ(f.s.ln_n, 1);
    EXPECT_EQ(f.s.ln_nact, 1);
    EXPECT_EQ(f.s.ln_act[1], "40");
    f.s.curclass = model::k_active_lines;
    EXPECT_TRUE(f.ops.mdelete({1}));
    EXPECT_EQ(f.s.ln_nact, 0);
    EXPECT_EQ(f.s.ln_n, 1);

    f.load(test::point("0x2f05", "p") + test::point("0x2f06", "q"), model::k_extra_points);
    f.dialogs.on_poisizes = accept;
    f.ops.new_element(model::k_extra_points);
    f.s.curclass = model::k_points;
    EXPECT_TRUE(f.ops.mdelete({0}));
    EXPECT_EQ(f.s.pt_n, 1);
    EXPECT_EQ(f.s.pt_nx, 1);
    EXPECT_EQ(f.s.pt_typ[1], "00001");  // the extra point moved down with it
    f.s.curclass = model::k_extra_points;
    EXPECT_TRUE(f.ops.mdelete({1}));
    EXPECT_EQ(f.s.pt_nx, 0);
    EXPECT_EQ(f.s.pt_typ.size(), 1u);
}

TEST(Renumber, APolygonKeepsItsLayerUnderItsNewTypeAndMovesToItsPlace) {
    OpsFixture f;
    f.load(k_polygons_one_three + test::polygon("0x05", "Five"));
    // The panel's apply has read the polygon 0x03 as 0x06.
    f.s.pg_typ[1] = "0x0600";
    EXPECT_EQ(f.ops.renumbered(model::k_polygons, 1, 0x300), 2);
    EXPECT_EQ(f.s.pg_typ[2], "0x0600");
    EXPECT_EQ(f.s.pg_drw[2], "Type=0006,2");
    EXPECT_NE(f.s.drwlist.find("0006,2"), std::string::npos);
    EXPECT_EQ(f.s.drwlist.find("0003,"), std::string::npos);
    EXPECT_EQ(f.host.log.back(), "Changed type number from 0x00300 to 0x00600");
    EXPECT_EQ(f.host.current, 2);
}

// The types of the level-1 entries, in their order.
std::vector<std::string> level_one(const model::Store& s) {
    std::vector<std::string> out;
    std::string t;
    for (std::istringstream in(s.drwlist); in >> t;)
        if (t.size() > 2 && t.compare(t.size() - 2, 2, ",1") == 0) out.push_back(t.substr(0, t.size() - 2));
    return out;
}

// Every operation that adds or renames a draw-order entry leaves the other
// entries of its level in the order they stood; a new one joins the end.
TEST(DrawOrderTies, EqualLevelsKeepTheirOrderThroughEveryOperation) {
    const std::string polygons = "[_drawOrder]\r\nType=0x05,1\r\n[end]\r\n" + test::polygon("0x01", "One") +
                                 test::polygon("0x03", "Three") + test::polygon("0x05", "Five");
    struct Case {
        const char* name;
        std::function<void(OpsFixture&)> run;
        std::vector<std::string> expected;
    };
    const std::vector<Case> cases = {
        {"new polygon",
         [](OpsFixture& f) {
             f.settings.polygon_seed = "00200";
             f.dialogs.on_poisizes = [](NewElementForm& form) { form.level = 1; return true; };
             EXPECT_GE(f.ops.new_element(model::k_polygons), 0);
         },
         {"0005", "0001", "0003", "0002"}},
        {"paste",
         [](OpsFixture& f) {
             f.clip.set_unicode_text("krv0\r\n00200\r\nType=0002,1\r\n" + test::polygon("0x02", "Two"));
             EXPECT_GE(f.ops.mpaste(), 0);
         },
         {"0005", "0001", "0003", "0002"}},
        {"paste replacing a type of the level",
         [](OpsFixture& f) {
             f.clip.set_unicode_text("krv0\r\n00100\r\nType=0001,1\r\n" + test::polygon("0x01", "Uno"));
             EXPECT_GE(f.ops.mpaste(), 0);
         },
         {"0005", "0001", "0003"}},
        {"create copy",
         [](OpsFixture& f) {
             f.settings.polygon_seed = "00200";
             EXPECT_GE(f.ops.mcreatecopy(2), 0);
         },
         {"0005", "0001", "0003", "0002"}},
        {"renumbering",
         [](OpsFixture& f) {
             f.s.pg_typ[0] = "0x0600";
             f.ops.renumbered(model::k_polygons, 0, 0x100);
         },
         {"0005", "0006", "0003"}},
        {"style import",
         [](OpsFixture& f) { EXPECT_EQ(f.ops.import_krv_text("<0/>\r\n<Polygons>0x02,landuse=yes</Polygons>\r\n"), 1); },
         {"0005", "0001", "0003", "0002"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        OpsFixture f;
        f.load(polygons);
        f.s.drwlist = " 0005,1 0001,1 0003,1";
        c.run(f);
        EXPECT_EQ(level_one(f.s), c.expected);
    }
}

// "An empty draworder exists": Yes puts the new polygon into that entry's
// layer, where the entry stood.
TEST(NewElement, AnEmptyEntryGivesTheNewPolygonItsLevel) {
    OpsFixture f;
    f.load(k_polygons_one_three);
    f.s.drwlist = " 0001,1 0004,3 0003,3";
    f.settings.polygon_seed = "00400";
    f.dialogs.on_poisizes = [](NewElementForm& form) {
        form.level = 7;
        return true;
    };
    const int32_t row = f.ops.new_element(model::k_polygons);
    ASSERT_GE(row, 0);
    EXPECT_EQ(f.ui.questions.back(), "An empty draworder exists for 00400. Continue?");
    EXPECT_EQ(f.s.pg_drw[static_cast<size_t>(row)], "Type=0004,3");
    EXPECT_EQ(f.s.drwlist, " 0001,1 0004,3 0003,3");
}

// A type another element has is refused by the code panel's Apply: the
// tables and the draw order stay as they were.
TEST(Renumber, OntoATypeThatExistsIsRefused) {
    OpsFixture f;
    f.load(k_polygons_one_three + test::line("0x02", "Two") + test::line("0x04", "Four") + test::point("0x2f05", "a") +
           test::point("0x2f06", "b"));
    struct Case {
        int cls;
        int32_t row;
        std::string from, to;
    };
    for (const Case& c : {Case{model::k_polygons, 1, "Type=0x03", "Type=0x01"},
                          Case{model::k_lines, 1, "Type=0x04", "Type=0x02"},
                          Case{model::k_points, 1, "Type=0x2f06", "Type=0x2f05"}}) {
        SCOPED_TRACE(c.cls);
        f.s.curclass = c.cls;
        const std::string before = f.text();
        const std::string drw = f.s.drwlist;
        std::string panel = c.cls == model::k_polygons ? test::polygon("0x03", "Three")
                            : c.cls == model::k_lines  ? test::line("0x04", "Four")
                                                       : test::point("0x2f06", "b");
        panel.replace(panel.find(c.from), c.from.size(), c.to);
        const text::PanelApply r = text::parsetext(f.s, f.ui, panel, c.cls, c.row, false);
        EXPECT_FALSE(r.ok);
        ASSERT_FALSE(f.ui.messages.empty());
        EXPECT_EQ(f.ui.messages.back(), "Type exists.");
        EXPECT_EQ(f.text(), before);
        EXPECT_EQ(f.s.drwlist, drw);
    }
    // The icon editor's type field alike.
    for (const Case& c : {Case{model::k_polygons, 1, "", "01"}, Case{model::k_lines, 1, "", "02"},
                          Case{model::k_points, 1, "05", "2f"}}) {
        SCOPED_TRACE(c.cls);
        const std::string before = f.text();
        editor::EditorSession e = editor::open_element(f.s, editor::OpenRequest{c.cls, c.row, {}});
        e.type_field = c.to;
        e.subtype_field = c.from;  // the subtype
        EXPECT_FALSE(editor::apply(f.s, e, f.ui).committed);
        EXPECT_EQ(f.ui.messages.back(), "Type exists.");
        EXPECT_EQ(f.text(), before);
    }
    // Its own type again is no renumbering.
    f.s.curclass = model::k_polygons;
    EXPECT_TRUE(text::parsetext(f.s, f.ui, test::polygon("0x03", "Drei"), model::k_polygons, 1, false).ok);
}

}  // namespace
}  // namespace korvex::workbench

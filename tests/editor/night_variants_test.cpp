// Night versions in the editor: a point's day and night pictures swapped on
// the canvas and written back, the night tick of points, lines and
// polygons with its questions, the reversal of a transparent pair, the
// night preview, and the list of extended points.
#include <functional>

#include "editor/extra_points.h"
#include "editor/image_import.h"
#include "editor/label_panel.h"
#include "editor/point_size.h"
#include "editor/transforms.h"
#include "editor/night_option.h"
#include "editor/tools.h"
#include "variants_fixture.h"
#include "workbench/element_rows.h"

namespace korvex::editor {
namespace {

using namespace variants;
using platform::Answer;

TEST(NightPicture, OpensBothPicturesAndSwapsThemOnTheCanvas) {
    Project p;
    EditorSession e = p.open(2, k_night_point);
    ASSERT_EQ(e.bmpmode, 1);
    EXPECT_EQ(e.colormode, 16);
    EXPECT_EQ(e.palette.colours, (std::vector<uint32_t>{0xFFFFFF, k_magenta}));
    EXPECT_FALSE(e.alpha);
    // The night waits with its own palette, levels and colormode.
    EXPECT_EQ(e.other.palette.colours, (std::vector<uint32_t>{rgb(0xFF, 0, 0), rgb(0, 0xFF, 0), 0}));
    EXPECT_EQ(e.other.palette.alpha, (std::vector<uint8_t>{3, 0, 15}));
    EXPECT_EQ(e.other.colormode, 32);
    EXPECT_EQ(e.other.opacity.at(2, 0), 15);
    EXPECT_EQ(e.other.opacity.at(0, 0), 3);
    EXPECT_EQ(cmd19_caption(e), "Edit Night BMP");
    const PointPicture day = canvas_picture(e), night = e.other;

    ASSERT_TRUE(cmd19(e));
    EXPECT_EQ(e.bmpmode, 2);
    EXPECT_EQ(cmd19_caption(e), "Edit Day BMP");
    EXPECT_EQ(variant_label(e), "Night");
    EXPECT_TRUE(e.alpha);
    EXPECT_EQ(e.palette, night.palette);
    EXPECT_EQ(e.surface.at(1, 0), rgb(0, 0xFF, 0));
    EXPECT_EQ(e.undo.level(), 0);
    ASSERT_TRUE(cmd19(e));
    EXPECT_EQ(look(canvas_picture(e), k_magenta), look(day, k_magenta));
    EXPECT_EQ(look(e.other, k_magenta), look(night, k_magenta));

    EditorSession plain = p.open(2, k_plain_point);
    EXPECT_FALSE(cmd19(plain));
    EXPECT_EQ(plain.bmpmode, 0);
}

// A night picture drawn on in the editor, applied, then saved as text and
// as TYP and read back: both pictures, the levels of every colour and the
// colormodes mean what they meant.
TEST(NightPicture, EditedNightSurvivesApplyTextAndTyp) {
    Project p;
    EditorSession e = p.open(2, k_night_point);
    ASSERT_TRUE(cmd19(e));
    ToolEngine tools(e, p.ui);
    e.curcol = 2;  // the green of level 0
    tools.press(3, 1, false);
    tools.release(3, 1);
    ASSERT_EQ(e.pixels.at(3, 1), 1);
    const Look day = look(day_picture(e), k_magenta), night = look(night_picture(e), k_magenta);
    ASSERT_TRUE(apply(p.s, e, p.ui).committed);
    EXPECT_TRUE(has(p.code(2, k_night_point), "NightXpm=\"4 2 3 1\" Colormode=32"));
    EXPECT_TRUE(has(p.code(2, k_night_point), "\"$%&$\"\r\n\"&&%%\""));

    auto same = [&](model::Store& s, const char* how) {
        SCOPED_TRACE(how);
        OpenRequest r;
        r.curclass = 2;
        r.row = k_night_point;
        EditorSession back = open_element(s, r);
        ASSERT_EQ(back.bmpmode, 1);
        EXPECT_EQ(look(day_picture(back), k_magenta), day);
        EXPECT_EQ(look(night_picture(back), k_magenta), night);
        EXPECT_EQ(night_picture(back).colormode, 32);
        EXPECT_EQ(day_picture(back).colormode, 16);
    };
    same(p.s, "applied");
    model::Store text_store, typ_store;
    reload_text(text_store, p.ui, as_text(p.s, p.ui));
    same(text_store, "text");
    reload_typ(typ_store, p.ui, p.s);
    same(typ_store, "typ");
}

TEST(NightOption, APointsNightStartsAsTheDayAndGoesAfterTheQuestion) {
    Project p;
    EditorSession e = p.open(2, k_plain_point);
    ASSERT_TRUE(set_night(e, true, p.ui));
    EXPECT_EQ(e.bmpmode, 1);
    EXPECT_EQ(e.newbmp, 1);
    EXPECT_TRUE(e.changes1 & ch_night);
    EXPECT_EQ(look(e.other, k_magenta), look(canvas_picture(e), k_magenta));
    EXPECT_FALSE(set_night(e, true, p.ui));
    ASSERT_TRUE(apply(p.s, e, p.ui).committed);
    const std::string with_night = p.code(2, k_plain_point);
    EXPECT_TRUE(has(with_night, "NightXpm=\"3 2 4 1\" Colormode=16\r\n\"$ c #FF0000\"\r\n\"% c #00FF00\"\r\n\"& c #0000FF\"\r\n\"' c none\"\r\n"
                                "\"$%&\"\r\n\"''$\""))
        << with_night;

    // Off: the question, then the night is gone; from the night canvas the
    // day comes back first.
    EditorSession again = p.open(2, k_plain_point);
    ASSERT_TRUE(cmd19(again));
    p.ui.script(Answer::no);
    EXPECT_FALSE(set_night(again, false, p.ui));
    EXPECT_EQ(p.ui.questions.back(), "This will delete current night colours . Continue?");
    EXPECT_EQ(again.bmpmode, 2);
    p.ui.script(Answer::yes);
    ASSERT_TRUE(set_night(again, false, p.ui));
    EXPECT_EQ(again.bmpmode, 0);
    EXPECT_EQ(again.palette.ncols(), 4);
    ASSERT_TRUE(apply(p.s, again, p.ui).committed);
    EXPECT_FALSE(has(p.code(2, k_plain_point), "NightXpm"));
    EXPECT_EQ(p.s.pt_nbmp[k_plain_point], "");
}

// A point with a night picture that changes size loses the night after
// its question, in the element's text as on the canvas; No keeps both.
TEST(NightPicture, AResizeAnsweredYesDropsTheNightFromTheText) {
    Project p;
    EditorSession e = p.open(2, k_night_point);
    const std::string before = p.code(2, k_night_point);
    ASSERT_TRUE(has(before, "NightXpm"));
    e.width_box = e.width + 1;
    ApplyForm form;
    form.resize_open = true;
    p.ui.script(Answer::no);
    EXPECT_FALSE(apply(p.s, e, p.ui, form).committed);
    EXPECT_EQ(p.ui.questions.back(), "Points with night bmp cannot be resized.\r\nContinue?");
    EXPECT_EQ(p.code(2, k_night_point), before);
    p.ui.script(Answer::yes);
    ASSERT_TRUE(apply(p.s, e, p.ui, form).committed);
    EXPECT_FALSE(has(p.code(2, k_night_point), "NightXpm"));
    EXPECT_EQ(p.s.pt_nbmp[k_night_point], "");
}

TEST(NightOption, ALineOrPolygonTakesNightColoursWithExtendedLabels) {
    Project p;
    EditorSession line = p.open(1, 0);
    ASSERT_FALSE(line.labels.extendedlabels);
    ASSERT_TRUE(set_night(line, true, p.ui));
    EXPECT_TRUE(line.labels.extendedlabels);
    EXPECT_EQ(p.ui.messages, (std::vector<std::string>{"Transparent colour changed to 'white'.",
                                                       "Font colours require the extended option ticked.",
                                                       "To Edit colours Click Edit Night Colours."}));
    EXPECT_EQ(line.nightpal.colours, (std::vector<uint32_t>{rgb(0xFF, 0, 0), 0xFFFFFF}));
    ASSERT_TRUE(apply(p.s, line, p.ui).committed);
    const std::string text = p.code(1, 0);
    EXPECT_TRUE(has(text, "ExtendedLabels=Y")) << text;
    EXPECT_TRUE(has(text, "Xpm=\"32 2 4 1\"")) << text;

    // Off drops the night pair again; a solid polygon keeps its night
    // colour as its second colour.
    EditorSession back = p.open(1, 0);
    ASSERT_TRUE(back.hasnight);
    ASSERT_TRUE(set_night(back, false, p.ui));
    EXPECT_EQ(back.nightpal.ncols(), 0);
    ASSERT_TRUE(apply(p.s, back, p.ui).committed);
    EXPECT_TRUE(has(p.code(1, 0), "Xpm=\"32 2 2 1\""));

    EditorSession solid = p.open(0, 1);
    p.ui.messages.clear();
    ASSERT_TRUE(set_night(solid, true, p.ui));
    EXPECT_EQ(solid.palette.ncols(), 2);
    EXPECT_EQ(nightvers(solid).at(5, 5), rgb(0, 0, 0xFF));
    ASSERT_TRUE(apply(p.s, solid, p.ui).committed);
    EXPECT_EQ(p.s.pg_mode[1], 7);
}

TEST(NightOption, ResetnightOfAnExtendedPointAsksOrRefuses) {
    Project p;
    EditorSession e = p.open(2, k_night_point);
    e.curclass = 4;
    ASSERT_TRUE(cmd19(e));
    EXPECT_FALSE(resetnight(e, p.ui));
    EXPECT_EQ(p.ui.messages.back(), "Revert to day colours before changing transparency option.");
    ASSERT_TRUE(cmd19(e));
    p.ui.script(Answer::no);
    EXPECT_FALSE(resetnight(e, p.ui));
    EXPECT_EQ(p.ui.questions.back(), "This requires removing night option. Continue?");
    EXPECT_EQ(e.bmpmode, 1);
    p.ui.script(Answer::yes);
    EXPECT_TRUE(resetnight(e, p.ui));
    EXPECT_EQ(e.bmpmode, 0);
    EXPECT_TRUE(e.eddirty);
    // Other classes and points without night pass untouched.
    EditorSession plain = p.open(2, k_night_point);
    EXPECT_TRUE(resetnight(plain, p.ui));
    EXPECT_EQ(plain.bmpmode, 1);
}

TEST(NightOption, ReversingATransparentPairWithNightAsksFirst) {
    Project p;
    EditorSession line = p.open(1, 0);
    const PixelGrid before = line.pixels;
    // Without night: no question.
    ASSERT_TRUE(reverse_pair(line, p.ui));
    EXPECT_TRUE(p.ui.questions.empty());
    EXPECT_EQ(line.pixels.at(0, 0), 1 - before.at(0, 0));
    EXPECT_EQ(line.pixels.at(8, 0), 1 - before.at(8, 0));

    EditorSession night = p.open(1, 0);
    set_night(night, true, p.ui);
    p.ui.script(Answer::no);
    EXPECT_FALSE(reverse_pair(night, p.ui));
    EXPECT_EQ(p.ui.questions.back(), "Both day & night colours are reversed due to transparency. Continue?");
    EXPECT_EQ(night.pixels, before);
    p.ui.script(Answer::yes);
    EXPECT_TRUE(reverse_pair(night, p.ui));
    EXPECT_EQ(night.pixels.at(0, 1), 1 - before.at(0, 1));
    // The night preview shows the bitmap in the night colours.
    const Raster preview = nightvers(night);
    EXPECT_EQ(preview.at(0, 0), night.nightpal.colour(night.pixels.at(0, 0) + 1));
    EXPECT_EQ(preview.at(8, 0), night.nightpal.colour(night.pixels.at(8, 0) + 1));

    EditorSession point = p.open(2, k_plain_point);
    EXPECT_FALSE(reverse_pair(point, p.ui));
}

TEST(ExtraPointList, GoingToAnotherPointKeepsOrDropsTheEditsAndLogs) {
    Project p;
    const std::string icon = "[_point]\r\nType=0x10\r\nDayXpm=\"2 1 2 1\" Colormode=0\r\n\"$ c #FF0000\"\r\n\"% c #00FF00\"\r\n\"$%\"\r\n[end]\r\n";
    ASSERT_GE(workbench::new_extrapoi(p.s, p.ui, icon), 0);
    ASSERT_GE(workbench::new_extrapoi(p.s, p.ui, "[_point]\r\nType=0x11\r\nDayXpm=\"0 0 0 0\"\r\n[end]\r\n"), 0);
    ASSERT_GE(workbench::new_extrapoi(p.s, p.ui, icon), 0);
    const std::vector<ExtraPointItem> list = extra_point_list(p.s);
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0].row, p.s.pt_n);
    EXPECT_TRUE(list[0].has_data);
    EXPECT_FALSE(list[1].has_data);

    EditorSession e = p.open(4, list[0].row);
    std::vector<std::string> log;
    ApplyOutcome applied;
    // A point without picture is not loaded.
    EXPECT_FALSE(leave_extra_point(p.s, e, list[1], p.ui, log, applied));
    EXPECT_EQ(p.ui.messages.back(), " No data for " + list[1].name);
    // Edits dropped: nothing reaches the store.
    const std::string before = p.code(4, 0);
    e.palette.set(1, 0x123456);
    e.eddirty = true;
    p.ui.script(Answer::no);
    EXPECT_TRUE(leave_extra_point(p.s, e, list[2], p.ui, log, applied));
    EXPECT_EQ(p.ui.questions.back(), "Wish to keep these changes?");
    EXPECT_EQ(p.code(4, 0), before);
    EXPECT_FALSE(applied.committed);
    // Edits kept: applied, and a fault of the pictures goes to the log.
    set_night(e, true, p.ui);
    e.other.pixels.set(0, 0, 7);
    p.ui.script(Answer::yes);
    EXPECT_TRUE(leave_extra_point(p.s, e, list[2], p.ui, log, applied));
    EXPECT_TRUE(applied.committed);
    EXPECT_TRUE(has(p.code(4, 0), "\"$ c #563412\""));
    EXPECT_EQ(log, (std::vector<std::string>{"icon:0+N cols dont match"}));
}

// A corpus file's points with a night picture: one whose day has a
// transparent entry, and one that is not square.
struct CorpusNight {
    model::Store s;
    platform::ScriptedPrompt ui;
    int32_t keyed = -1, oblong = -1;
    CorpusNight() {
        const std::string dir = testing::corpus_dir();
        if (dir.empty()) return;
        const std::string path = dir + "/txt/aio-basemap.txt";
        model::newproject(s);
        if (!text::load_txt(s, ui, path, testing::read_bytes(path), false, true)) return;
        for (int32_t r = 0; r < s.pt_n; ++r) {
            if (s.pt_col[static_cast<size_t>(r)].find("NightXpm") == std::string::npos) continue;
            const EditorSession e = open(r);
            if (e.bmpmode != 1 || e.truecolour) continue;
            if (keyed < 0 && !e.alpha && e.palette.first_transparent(k_magenta) != 0) keyed = r;
            if (oblong < 0 && e.width != e.height) oblong = r;
        }
        s.dirty = false;
    }
    EditorSession open(int32_t r) const {
        OpenRequest q;
        q.curclass = 2;
        q.row = r;
        return open_element(s, q);
    }
    std::string code(int32_t r) { return text::create_code(s, r + 1, 2, false); }
};

// After Apply the point's night picture has the day picture's size.
void expect_night_fits_day(const CorpusNight& c, int32_t row) {
    const EditorSession back = c.open(row);
    if (back.bmpmode == 0) return;
    const PointPicture night = night_picture(back);
    EXPECT_EQ(night.pixels.width(), back.width);
    EXPECT_EQ(night.pixels.height(), back.height);
}

TEST(NightKeepsDaySize, RotateTurnsTheNightWithTheDay) {
    CorpusNight c;
    if (c.oblong < 0) GTEST_SKIP() << "no corpus";
    EditorSession e = c.open(c.oblong);
    const int w = e.width, h = e.height;
    const Look night = look(e.other, k_magenta);
    ASSERT_TRUE(rotate(e, false, c.ui));
    ASSERT_TRUE(apply(c.s, e, c.ui).committed);
    const EditorSession back = c.open(c.oblong);
    ASSERT_EQ(back.bmpmode, 1);
    EXPECT_EQ(back.width, h);
    EXPECT_EQ(back.height, w);
    const PointPicture turned_night = night_picture(back);
    ASSERT_EQ(turned_night.pixels.width(), h);
    ASSERT_EQ(turned_night.pixels.height(), w);
    // (x, y) of the old night is (h - 1 - y, x) of the new one.
    Look turned(night.size());
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) turned[static_cast<size_t>(x * h + h - 1 - y)] = night[static_cast<size_t>(y * w + x)];
    EXPECT_EQ(look(turned_night, k_magenta), turned);
}

TEST(NightKeepsDaySize, BorderAndCanvasRefuseANightPoint) {
    CorpusNight c;
    if (c.keyed < 0) GTEST_SKIP() << "no corpus";
    const std::string before = c.code(c.keyed);
    EditorSession e = c.open(c.keyed);
    const int w = e.width;
    for (const char* answer : {"M2", "L", "D"}) {
        EXPECT_FALSE(add_canvas(e, answer, c.ui)) << answer;
        EXPECT_EQ(c.ui.messages.back(), "Deselect night bitmap.") << answer;
        EXPECT_EQ(e.width, w) << answer;
    }
    ASSERT_TRUE(apply(c.s, e, c.ui).committed);
    EXPECT_EQ(c.code(c.keyed), before);
}

// A picture of another size over the whole bitmap, and a point made empty:
// check4up asks; No keeps both pictures as they were, Yes drops the night.
TEST(NightKeepsDaySize, ImportPasteAndEmptyGoThroughCheck4up) {
    CorpusNight c;
    if (c.keyed < 0) GTEST_SKIP() << "no corpus";
    const std::string before = c.code(c.keyed);
    const std::string resize_question = "Points with night bmp cannot be resized.\r\nContinue?";
    const platform::Image big{20, 24, std::vector<uint32_t>(20 * 24, 0xFF336699)};
    platform::MemoryClipboard clipboard;
    clipboard.set_image(big);
    const model::Store original = c.s;
    using Run = std::function<bool(EditorSession&, ToolEngine&)>;
    const std::vector<std::pair<const char*, Run>> tools_run = {
        {"import", [&](EditorSession& e, ToolEngine& t) { return import_picture(e, t, c.ui, big); }},
        {"paste", [&](EditorSession& e, ToolEngine& t) { return pastebut(e, t, c.ui, clipboard, false); }},
        {"empty", [&](EditorSession& e, ToolEngine&) { return resize_point(e, c.ui, 0, 0, false); }},
    };
    for (const auto& [name, run] : tools_run) {
        SCOPED_TRACE(name);
        const std::string name_s = name;
        EditorSession e = c.open(c.keyed);
        ToolEngine tools(e, c.ui);
        const int w = e.width;
        // Import asks "Convert to RGB." first, the empty bitmap whether to remove it.
        if (name_s != "paste") c.ui.script(Answer::yes);
        c.ui.script(Answer::no);
        EXPECT_FALSE(run(e, tools));
        EXPECT_EQ(c.ui.questions.back(), resize_question);
        EXPECT_EQ(e.width, w);
        EXPECT_EQ(e.bmpmode, 1);
        EXPECT_FALSE(e.truecolour);
        ASSERT_TRUE(apply(c.s, e, c.ui).committed);
        EXPECT_EQ(c.code(c.keyed), before);

        EditorSession again = c.open(c.keyed);
        ToolEngine tools2(again, c.ui);
        if (name_s != "paste") c.ui.script(Answer::yes);
        c.ui.script(Answer::yes);
        ASSERT_TRUE(run(again, tools2));
        EXPECT_EQ(again.bmpmode, 0);
        ASSERT_TRUE(apply(c.s, again, c.ui).committed);
        EXPECT_FALSE(has(c.code(c.keyed), "NightXpm"));
        EXPECT_EQ(c.s.pt_nbmp[static_cast<size_t>(c.keyed)], "");
        expect_night_fits_day(c, c.keyed);
        // The next tool starts from the point as it was.
        c.s = original;
    }
}

// An extra point's import asks resetnight first, whatever the size.
TEST(NightKeepsDaySize, ImportOfAnExtendedPointAsksResetnight) {
    Project p;
    EditorSession e = p.open(2, k_night_point);
    e.curclass = 4;
    ToolEngine tools(e, p.ui);
    const platform::Image small{2, 2, std::vector<uint32_t>(4, 0xFF336699)};
    p.ui.script(Answer::yes);
    p.ui.script(Answer::no);
    EXPECT_FALSE(import_picture(e, tools, p.ui, small));
    EXPECT_EQ(p.ui.questions.back(), "This requires removing night option. Continue?");
    EXPECT_EQ(e.bmpmode, 1);
    EXPECT_FALSE(e.truecolour);
    p.ui.script(Answer::yes);
    p.ui.script(Answer::yes);
    ASSERT_TRUE(import_picture(e, tools, p.ui, small));
    EXPECT_EQ(e.bmpmode, 0);
    EXPECT_TRUE(e.truecolour);
}

}  // namespace
}  // namespace korvex::editor

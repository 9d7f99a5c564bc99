// The batch colour tools: Create Palette, the palette conversions, day
// opacity and Make Transparent, on small projects and over the corpus.
#include <gtest/gtest.h>

#include <filesystem>

#include "editor/standard_palettes.h"
#include "ops_fixture.h"
#include "platform/file_dialog.h"
#include "platform/files.h"
#include "text/palette_file.h"
#include "workbench/browser.h"
#include "workbench/colour_line_hex.h"
#include "workbench/day_opacity.h"
#include "workbench/icon_painter.h"
#include "workbench/make_transparent.h"
#include "workbench/palette_panel.h"
#include "workbench/palette_reduction.h"
#include "support/path_text.h"

namespace korvex::workbench {
namespace {

using namespace korvex::testing;
using test::k_head;

constexpr uint32_t k_background = 0xFF123456;

// Every column that a tool may change, of every class.
struct Columns {
    std::vector<std::string> pg_col, pg_txt, pg_bmp, ln_col, ln_txt, ln_bmp, pt_col, pt_txt, pt_bmp, pt_nbmp, pt_xpm;
    bool dirty;
    explicit Columns(const model::Store& s)
        : pg_col(s.pg_col), pg_txt(s.pg_txt), pg_bmp(s.pg_bmp), ln_col(s.ln_col), ln_txt(s.ln_txt), ln_bmp(s.ln_bmp),
          pt_col(s.pt_col), pt_txt(s.pt_txt), pt_bmp(s.pt_bmp), pt_nbmp(s.pt_nbmp), pt_xpm(s.pt_xpm), dirty(s.dirty) {}
    bool operator==(const Columns&) const = default;
};

// The day and night pictures of every element of a class as painted.
std::vector<std::vector<uint32_t>> painted(model::Store& s, int cls) {
    std::vector<std::vector<uint32_t>> out;
    const int32_t first = cls == model::k_extra_points ? s.pt_n : cls == model::k_active_lines ? s.ln_n : 0;
    for (int32_t k = 0; k < class_count(s, cls); ++k)
        for (bool night : {false, true}) {
            const Raster r = paint_element(s, cls, first + k, k_background, night);
            out.push_back(r.px);
            out.back().push_back(static_cast<uint32_t>(r.w));
        }
    return out;
}

struct ToolFixture {
    model::Store s;
    Browser b;
    platform::ScriptedPrompt ui{platform::Answer::yes};
    const integration::Messages& m = english_messages();

    void load(const std::string& body, int cls) {
        model::newproject(s);
        platform::ScriptedPrompt quiet;
        text::load_txt(s, quiet, "", k_head + body, false, false);
        s.dirty = false;
        show(cls);
    }
    void show(int cls) {
        b.set_class(cls);
        s.curclass = cls;
        b.build_grid(s);
    }
};

std::string point(const std::string& type, const std::string& head, const std::vector<std::string>& lines) {
    std::string t = "[_point]\r\nType=0x" + type + "\r\nString1=0x04,P" + type + "\r\nDayXpm=\"" + head + "\r\n";
    for (const std::string& l : lines) t += l + "\r\n";
    return t + "[end]\r\n";
}

// A polygon, a line and three points: plain, transparent, and with opacity.
const std::string k_mixed =
    "[_drawOrder]\r\nType=0x03,4\r\n[end]\r\n" + test::polygon("0x03", "Town", "FE0101") + test::line("0x01", "Road") +
    point("2f00", "2 2 2 1\" Colormode=0", {"\"! c #FE0101\"", "\"# c #0101FE\"", "\"!#\"", "\"#!\""}) +
    point("2f01", "2 1 2 1\" Colormode=16", {"\"! c #FE0101\"", "\"# c none\"", "\"!#\""}) +
    point("2f02", "2 1 2 1\" Colormode=32", {"\"! c #FE0101\" alpha=3", "\"# c #0101FE\" alpha=0", "\"!#\""});

// ---- Create Palette ----

TEST(PalettePanel, StepCountMustLieAboveTwoAndBelowOneHundredTwentyEight) {
    const struct {
        const char* count;
        bool taken;
    } cases[] = {{"2", false}, {"3", true}, {"127", true}, {"128", false}, {"", false}, {"1x", false}, {"-5", false}};
    for (const auto& c : cases) {
        platform::ScriptedPrompt ui;
        const auto pal = two_colour_palette(ui, english_messages(), "000000", "FFFFFF", c.count);
        EXPECT_EQ(pal.has_value(), c.taken) << c.count;
        if (c.taken) {
            EXPECT_EQ(pal->size(), static_cast<size_t>(std::stoi(c.count)));
            EXPECT_TRUE(ui.messages.empty());
        } else {
            EXPECT_EQ(ui.messages, std::vector<std::string>{"Colours  >2 <128"}) << c.count;
        }
    }
}

TEST(PalettePanel, StepsAreLinearPerChannelWithBothEndsExact) {
    platform::ScriptedPrompt ui;
    // Red falls while blue rises; short digits are padded in front.
    const auto pal = two_colour_palette(ui, english_messages(), "FF0010", "FF", "3");
    ASSERT_TRUE(pal);
    EXPECT_EQ(text::tpal_text(*pal), "FF0010,800088,0000FF,");
    const auto wide = two_colour_palette(ui, english_messages(), "0A141E", "F5EBE1", "127");
    ASSERT_TRUE(wide);
    EXPECT_EQ(text::hex6(wide->front()), "0A141E");
    EXPECT_EQ(text::hex6(wide->back()), "F5EBE1");
    for (size_t i = 1; i < wide->size(); ++i) EXPECT_GE((*wide)[i] & 0xFF, (*wide)[i - 1] & 0xFF);
    EXPECT_FALSE(two_colour_palette(ui, english_messages(), "GG0000", "FFFFFF", "3"));
    EXPECT_FALSE(two_colour_palette(ui, english_messages(), "1000000", "FFFFFF", "3"));
    EXPECT_EQ(ui.messages, (std::vector<std::string>{"Not a valid hex", "Not a valid hex"}));
}

TEST(PalettePanel, SavesUnderPalAndReplacesOnlyWhenAsked) {
    const std::string d = (std::filesystem::temp_directory_path() / ("korvex-pal-" + std::to_string(::getpid()))).string();
    std::filesystem::remove_all(d);
    std::filesystem::create_directories(d + "/pal");
    platform::ScriptedPrompt ui;
    const std::vector<uint32_t> first = {0x000000, 0xFFFFFF}, second = {0x0000FF};
    const std::string path = save_palette(ui, english_messages(), d, "ramp", first);
    EXPECT_EQ(path, testing::preferred(d + "/pal/ramp.tpal"));
    EXPECT_TRUE(ui.questions.empty());
    for (const auto a : {platform::Answer::no, platform::Answer::yes}) {
        platform::ScriptedPrompt asked;
        asked.script(a);
        const std::string again = save_palette(asked, english_messages(), d, "ramp", second);
        EXPECT_EQ(asked.questions, std::vector<std::string>{"Replace this file?"});
        EXPECT_EQ(again.empty(), a == platform::Answer::no);
        EXPECT_EQ(*text::read_tpal(path), a == platform::Answer::no ? first : second);
    }
    std::filesystem::remove_all(d);
}

TEST(PalettePanel, TypPaletteHoldsEveryColourOnceNoneNeverAndNightToo) {
    ToolFixture f;
    f.load(k_mixed + point("2f03", "1 1 1 1\"", {"\"! c #FE0101\"", "\"!\"", "NightXpm=\"1 1 1 1\"", "\"! c #ABCDEF\"",
                                                 "\"!\""}),
           model::k_points);
    std::string hex;
    for (uint32_t c : typ_palette(f.s)) hex += text::hex6(c) + ",";
    // Polygon, line (its pair), then the points' colours in row order.
    EXPECT_EQ(hex, "FE0101,00FF00,000000,0101FE,ABCDEF,");
}

// ---- palette conversion ----

TEST(PaletteConversion, NearestColourReplacesTheHexOnlyAndTiesTakeTheLowerEntry) {
    const std::vector<uint32_t> pal = {0x000000, 0x020202};
    // 010101 is as near to both: the first entry wins, in either order.
    EXPECT_EQ(palette_colour_lines("\"$ c #010101\"\r\n", pal, false), "\"$ c #000000\"\r\n");
    EXPECT_EQ(palette_colour_lines("\"$ c #010101\"\r\n", {0x020202, 0x000000}, false), "\"$ c #020202\"\r\n");
    // Keys (even "c" and "#"), "none", alpha and head lines stay as they are.
    const std::string text = "DayXpm=\"1 1 3 1\"\r\n\"c c #030303\" alpha=4\r\n\"# c none\"\r\nDaycustomColor:#030303\r\n";
    EXPECT_EQ(palette_colour_lines(text, pal, false),
              "DayXpm=\"1 1 3 1\"\r\n\"c c #020202\" alpha=4\r\n\"# c none\"\r\nDaycustomColor:#030303\r\n");
    // A small custom palette leaves black alone.
    EXPECT_EQ(palette_colour_lines("\"0 c #000000\"", {0x808080}, true), "\"0 c #000000\"");
    EXPECT_EQ(palette_colour_lines("\"0 c #000000\"", {0x808080}, false), "\"0 c #808080\"");
}

TEST(PaletteConversion, BlackStaysOnlyForACustomPaletteSmallerThanTheElement) {
    EXPECT_TRUE(keeps_black(k_pal_custom, 3, 4));
    EXPECT_FALSE(keeps_black(k_pal_custom, 4, 4));
    for (int entry : {k_pal_bw, k_pal_256, k_pal_64, k_pal_16}) EXPECT_FALSE(keeps_black(entry, 2, 200));
}

TEST(PaletteConversion, BundledFilesAreTheStandardPalettes) {
    const std::string dir = source_dir() + "/data/pal/";
    EXPECT_EQ(*text::read_tpal(dir + "bw.tpal"), (std::vector<uint32_t>{0x000000, 0xFFFFFF}));
    EXPECT_EQ(*text::read_tpal(dir + "256.tpal"), editor::palette_256());
    EXPECT_EQ(*text::read_tpal(dir + "64.tpal"), editor::palette_64());
    EXPECT_EQ(*text::read_tpal(dir + "16.tpal"), editor::palette_16());
    EXPECT_EQ(find_palette({"/nonexistent", dir}, "16.tpal"), dir + "/16.tpal");
    EXPECT_EQ(find_palette({"/nonexistent"}, "16.tpal"), "");
}

TEST(PaletteConversion, SelectedPointsTakeThePaletteAndOpacityPointsAndOtherClassesStay) {
    ToolFixture f;
    f.load(k_mixed, model::k_points);
    const auto lines_before = painted(f.s, model::k_lines);
    const auto polygons_before = painted(f.s, model::k_polygons);
    const std::vector<std::string> bmp = f.s.pt_bmp, alpha_col = {f.s.pt_col[2]};
    f.b.select_all();
    platform::ScriptedFileDialog dialogs;
    EdpalRequest r;
    r.entry = k_pal_16;
    r.folders = {source_dir() + "/data/pal"};
    ASSERT_TRUE(edpal(f.s, f.b, f.ui, f.m, dialogs, r));
    EXPECT_TRUE(f.s.dirty);
    EXPECT_EQ(f.s.pt_col[0], "\"$ c #FF0000\"\r\n\"% c #0000FF\"\r\n");
    EXPECT_NE(f.s.pt_txt[0].find("\"$ c #FF0000\"\r\n\"% c #0000FF\"\r\n"), std::string::npos);
    EXPECT_EQ(f.s.pt_col[1], "\"$ c #FF0000\"\r\n\"% c none\"\r\n");
    EXPECT_EQ(f.s.pt_col[2], alpha_col[0]);
    EXPECT_EQ(f.s.pt_bmp, bmp);
    EXPECT_EQ(painted(f.s, model::k_lines), lines_before);
    EXPECT_EQ(painted(f.s, model::k_polygons), polygons_before);
    // The bar ran to the end and was put away.
    EXPECT_EQ(f.ui.peak_progress, 100);
    EXPECT_EQ(f.ui.last_progress, 0);
    // What the text reader makes of the element's own text is the same row.
    ToolFixture again;
    again.load(f.s.pt_txt[0] + "\"$%\"\r\n\"%$\"\r\n[end]\r\n", model::k_points);
    EXPECT_EQ(again.s.pt_col[0], f.s.pt_col[0]);
}

TEST(PaletteConversion, RefusalsChangeNothing) {
    ToolFixture f;
    f.load(k_mixed, model::k_points);
    f.b.select_all();
    const Columns before(f.s);
    const std::string pal = source_dir() + "/data/pal";
    EdpalRequest r;
    r.folders = {pal};

    // A bundled file that is nowhere.
    r.entry = k_pal_64;
    r.folders = {"/nonexistent"};
    platform::ScriptedFileDialog dialogs;
    EXPECT_FALSE(edpal(f.s, f.b, f.ui, f.m, dialogs, r));
    EXPECT_EQ(f.ui.messages.back(), "Cannot find 64.tpal");
    // The custom dialog cancelled, then a file that cannot be read.
    r.entry = k_pal_custom;
    r.start = pal;
    EXPECT_FALSE(edpal(f.s, f.b, f.ui, f.m, dialogs, r));
    ASSERT_EQ(dialogs.calls.size(), 1u);
    EXPECT_EQ(dialogs.calls[0].filters, "Korvex Palette files (*.tpal|*.tpal");
    EXPECT_EQ(dialogs.calls[0].start, pal);
    dialogs.script("/nonexistent/mine.tpal");
    EXPECT_FALSE(edpal(f.s, f.b, f.ui, f.m, dialogs, r));
    EXPECT_EQ(f.ui.messages.back(), "Cannot find /nonexistent/mine.tpal");
    // No and Cancel at "Continue?".
    r.entry = k_pal_bw;
    r.folders = {pal};
    for (const auto a : {platform::Answer::no, platform::Answer::cancel}) {
        platform::ScriptedPrompt asked;
        asked.script(a);
        EXPECT_FALSE(edpal(f.s, f.b, asked, f.m, dialogs, r));
        EXPECT_EQ(asked.questions, std::vector<std::string>{"Continue?"});
    }
    // Extra Points refuse the tool.
    f.show(model::k_extra_points);
    EXPECT_FALSE(edpal(f.s, f.b, f.ui, f.m, dialogs, r));
    EXPECT_EQ(Columns(f.s), before);
    // An empty class.
    f.show(model::k_active_lines);
    EXPECT_FALSE(edpal(f.s, f.b, f.ui, f.m, dialogs, r));
    EXPECT_EQ(f.ui.messages.back(), "No data.");
    EXPECT_EQ(Columns(f.s), before);
}

// ---- day opacity ----

TEST(DayOpacity, AddGivesEveryColourTheValueAndKeepsTransparencyFull) {
    ToolFixture f;
    f.load(k_mixed, model::k_points);
    f.b.select_all();
    EXPECT_EQ(conv_32(f.s, f.b, f.ui, f.m, {true, 7, false}), 3);
    EXPECT_EQ(f.ui.peak_progress, 100);
    EXPECT_EQ(f.ui.last_progress, 0);
    EXPECT_EQ(f.s.pt_col[0], "\"$ c #FE0101\" alpha=7\r\n\"% c #0101FE\" alpha=7\r\n");
    EXPECT_EQ(f.s.pt_col[1], "\"$ c #FE0101\" alpha=7\r\n\"% c #000000\" alpha=15\r\n");
    EXPECT_EQ(f.s.pt_col[2], "\"$ c #FE0101\" alpha=7\r\n\"% c #0101FE\" alpha=7\r\n");
    for (int r = 0; r < 3; ++r) EXPECT_NE(f.s.pt_xpm[r].find("Colormode=32"), std::string::npos) << r;
    EXPECT_TRUE(f.s.dirty);
}

TEST(DayOpacity, ReplaceTurnsFifteenToNoneAndSetsTheModeByWhatIsLeft) {
    ToolFixture f;
    // No colour at 15: mode 0. Two at 15: one "none" (mode 16) whose key both
    // pixels take.
    f.load(point("2f00", "2 1 2 1\" Colormode=32", {"\"! c #FE0101\" alpha=3", "\"# c #0101FE\" alpha=14", "\"!#\""}) +
               point("2f01", "3 1 3 1\" Colormode=32",
                     {"\"! c #FE0101\" alpha=15", "\"# c #0101FE\" alpha=2", "\"& c #00FF00\" alpha=15", "\"!#&\""}),
           model::k_points);
    f.b.select_all();
    EXPECT_EQ(conv_32(f.s, f.b, f.ui, f.m, {false, 0, false}), 2);
    EXPECT_EQ(f.s.pt_col[0], "\"$ c #FE0101\"\r\n\"% c #0101FE\"\r\n");
    EXPECT_NE(f.s.pt_xpm[0].find("Colormode=0"), std::string::npos);
    EXPECT_NE(f.s.pt_xpm[1].find("\"3 1 2 1\" Colormode=16"), std::string::npos) << f.s.pt_xpm[1];
    ASSERT_EQ(f.s.pt_ncol[1], 2);
    const Raster r = paint_element(f.s, model::k_points, 1, k_background);
    EXPECT_EQ(r.px, (std::vector<uint32_t>{k_background, 0xFF0101FE, k_background}));
    // Nothing left to replace: no change, no count.
    f.ui.script(platform::Answer::yes);
    EXPECT_EQ(conv_32(f.s, f.b, f.ui, f.m, {false, 0, false}), 0);
}

// A point of n colours in opacity mode keyed two characters a pixel, one row
// using them all; the first two colours fully transparent.
std::string wide_opacity_point(int n) {
    std::vector<std::string> lines;
    std::string row;
    for (int i = 0; i < n; ++i) {
        const std::string key = {static_cast<char>('A' + i / 16), static_cast<char>('a' + i % 16)};
        char hex[8];
        std::snprintf(hex, sizeof hex, "%06X", 0x102030 + i * 0x010101);
        lines.push_back("\"" + key + " c #" + hex + "\" alpha=" + (i < 2 ? "15" : "4"));
        row += key;
    }
    lines.push_back("\"" + row + "\"");
    return point("2f00", std::to_string(n) + " 1 " + std::to_string(n) + " 2\" Colormode=32", lines);
}

TEST(DayOpacity, ReplaceAcrossTheTwoCharacterLimitKeepsThePicture) {
    // 33 colours lose one to the merged "none" and stay two characters a
    // pixel; 32 fall to 31 and are read back with one.
    for (const int n : {33, 32}) {
        ToolFixture f;
        f.load(wide_opacity_point(n), model::k_points);
        ASSERT_EQ(f.s.pt_ncol[0], n);
        f.b.select_all();
        ASSERT_EQ(conv_32(f.s, f.b, f.ui, f.m, {false, 0, false}), 1);
        EXPECT_EQ(f.s.pt_ncol[0], n - 1);
        EXPECT_EQ(f.s.pt_bmp[0].size(), static_cast<size_t>(n * (n - 1 < model::cpp_limit ? 1 : 2) + 2)) << n;
        const Raster r = paint_element(f.s, model::k_points, 0, k_background);
        ASSERT_EQ(r.w, n);
        EXPECT_EQ(r.px[0], k_background);
        EXPECT_EQ(r.px[1], k_background);
        EXPECT_EQ(r.px[2], 0xFF000000u | (0x102030 + 2 * 0x010101));
        EXPECT_EQ(r.px[static_cast<size_t>(n - 1)], 0xFF000000u | static_cast<uint32_t>(0x102030 + (n - 1) * 0x010101));
    }
}

TEST(DayOpacity, NightPicturesTakeTheSameWalk) {
    ToolFixture f;
    f.load(point("2f00", "2 1 1 1\"", {"\"! c #FE0101\"", "\"!!\"", "NightXpm=\"2 1 2 1\"", "\"! c #ABCDEF\"",
                                      "\"# c none\"", "\"!#\""}),
           model::k_points);
    f.b.select_all();
    ASSERT_EQ(conv_32(f.s, f.b, f.ui, f.m, {true, 5, false}), 1);
    EXPECT_NE(f.s.pt_col[0].find("NightXpm=\"2 1 2 1\" Colormode=32\r\n\"$ c #ABCDEF\" alpha=5\r\n\"% c #000000\" alpha=15"),
              std::string::npos)
        << f.s.pt_col[0];
    f.ui.script(platform::Answer::yes);
    ASSERT_EQ(conv_32(f.s, f.b, f.ui, f.m, {false, 0, false}), 1);
    EXPECT_NE(f.s.pt_col[0].find("\"$ c #ABCDEF\"\r\n\"% c none\""), std::string::npos) << f.s.pt_col[0];
}

// Replace after Add gives every corpus point without opacity its pictures back.
class DayOpacityCorpus : public ::testing::TestWithParam<std::string> {};

TEST_P(DayOpacityCorpus, ReplaceAfterAddPaintsTheSamePictures) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    ToolFixture f;
    platform::QuietPrompt quiet;
    text::load_txt(f.s, quiet, GetParam(), read_bytes(GetParam()), false, false);
    f.show(model::k_points);
    std::vector<int32_t> plain;
    std::vector<Raster> day, night;
    for (int32_t r = 0; r < f.s.pt_n; ++r)
        if (f.s.pt_col[r].find("alpha") == std::string::npos && read_point_picture(f.s, r).width > 0) {
            plain.push_back(r);
            day.push_back(paint_element(f.s, model::k_points, r, k_background));
            night.push_back(paint_element(f.s, model::k_points, r, k_background, true));
        }
    const Columns columns(f.s);
    f.b.select_all();
    EXPECT_GE(conv_32(f.s, f.b, quiet, f.m, {true, 9, false}), static_cast<int>(plain.size()));
    EXPECT_GE(conv_32(f.s, f.b, quiet, f.m, {false, 0, false}), static_cast<int>(plain.size()));
    for (size_t k = 0; k < plain.size(); ++k) {
        const int32_t r = plain[k];
        EXPECT_EQ(f.s.pt_col[r], columns.pt_col[r]) << f.s.pt_typ[r];
        EXPECT_EQ(f.s.pt_bmp[r], columns.pt_bmp[r]) << f.s.pt_typ[r];
        EXPECT_EQ(paint_element(f.s, model::k_points, r, k_background).px, day[k].px) << f.s.pt_typ[r];
        EXPECT_EQ(paint_element(f.s, model::k_points, r, k_background, true).px, night[k].px) << f.s.pt_typ[r];
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, DayOpacityCorpus, ::testing::ValuesIn(corpus_params(corpus_texts())),
                         [](const auto& info) { return file_param_name(info.param); });

// ---- Make Transparent ----

TEST(MakeTransparent, EachClassDrawsNothingWhereItDrewAndTheOthersStay) {
    for (int cls : {model::k_polygons, model::k_lines, model::k_points}) {
        ToolFixture f;
        f.load(k_mixed, cls);
        f.b.select_all();
        std::vector<std::vector<uint32_t>> others[5];
        for (int other : {model::k_polygons, model::k_lines, model::k_points})
            if (other != cls) others[other] = painted(f.s, other);
        const std::string drwlist = f.s.drwlist;
        const std::vector<std::string> pg_drw = f.s.pg_drw, pg_typ = f.s.pg_typ;
        ASSERT_EQ(make_transp(f.s, f.b, f.ui, f.m, false), cls == model::k_points ? 3 : 1) << cls;
        EXPECT_EQ(f.ui.last_progress, 0);
        EXPECT_TRUE(f.s.dirty);
        // Type and draw order are the element's, whatever it draws.
        EXPECT_EQ(f.s.drwlist, drwlist);
        EXPECT_EQ(f.s.pg_drw, pg_drw);
        EXPECT_EQ(f.s.pg_typ, pg_typ);
        for (int other : {model::k_polygons, model::k_lines, model::k_points})
            if (other != cls) EXPECT_EQ(painted(f.s, other), others[other]) << cls << " changed " << other;
        if (cls == model::k_points) {
            EXPECT_EQ(f.s.pt_col[0], "\"$ c none\"\r\n\"% c #0101FE\"\r\n");
            EXPECT_NE(f.s.pt_xpm[0].find("Colormode=16"), std::string::npos);
            EXPECT_EQ(f.s.pt_col[2], "\"$ c #000000\" alpha=15\r\n\"% c #0101FE\" alpha=0\r\n");
            // A point with a transparent colour: the first one joins it.
            EXPECT_EQ(f.s.pt_col[1], "\"$ c none\"\r\n");
            EXPECT_EQ(f.s.pt_bmp[1], "$$\r\n");
            continue;
        }
        const Raster r = paint_element(f.s, cls, 0, k_background);
        ASSERT_FALSE(r.empty());
        for (uint32_t px : r.px) ASSERT_EQ(px, k_background) << cls;
        const std::string& txt = cls == model::k_polygons ? f.s.pg_txt[0] : f.s.ln_txt[0];
        EXPECT_NE(txt.find("String1=0x04,"), std::string::npos);
        EXPECT_NE(txt.find("#CFF6F6"), std::string::npos);
        if (cls == model::k_lines) {
            EXPECT_EQ(txt.find("Width="), std::string::npos) << txt;
            EXPECT_EQ(f.s.ln_bord[0], 0);
        }
    }
}

TEST(MakeTransparent, PromptsComeFirstAndCancelOrNoSelectionChangesNothing) {
    ToolFixture f;
    f.load(k_mixed, model::k_polygons);
    const Columns before(f.s);
    for (const auto a : {platform::Answer::no, platform::Answer::cancel}) {
        platform::ScriptedPrompt asked;
        asked.script(a);
        f.b.select_all();
        EXPECT_EQ(make_transp(f.s, f.b, asked, f.m, false), 0);
        EXPECT_EQ(asked.messages, std::vector<std::string>{"Reload TYP file to undo changes."});
    }
    f.b.no_multi();
    platform::ScriptedPrompt ui;
    EXPECT_EQ(make_transp(f.s, f.b, ui, f.m, false), 0);
    EXPECT_EQ(ui.messages.back(), "Please CTRL/SHIFT or CTRL A select.\r\n\r\nCTRL/SHFT  (CTRL A) (Esc = cancel)");
    f.show(model::k_extra_points);
    EXPECT_EQ(make_transp(f.s, f.b, ui, f.m, true), 0);
    EXPECT_EQ(ui.messages.back(), "No data.");
    EXPECT_EQ(Columns(f.s), before);
}

}  // namespace
}  // namespace korvex::workbench

namespace korvex::workbench {
namespace {

// Over every corpus file: every class converted to 16 colours holds only
// palette colours (opacity points aside) and saves as text that reads back
// to the same pictures: the tool leaves elements a reader takes as they are.
class PaletteConversionCorpus : public ::testing::TestWithParam<std::string> {};

TEST_P(PaletteConversionCorpus, ConvertedElementsReadBackAsTheyPaint) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    ToolFixture f;
    platform::QuietPrompt quiet;
    text::load_txt(f.s, quiet, GetParam(), read_bytes(GetParam()), false, false);
    platform::ScriptedFileDialog dialogs;
    EdpalRequest r;
    r.entry = k_pal_16;
    r.folders = {source_dir() + "/data/pal"};
    const std::vector<uint32_t> pal = editor::palette_16();
    for (int cls : {model::k_polygons, model::k_lines, model::k_points}) {
        f.show(cls);
        f.b.select_all();
        // False where nothing changed: a class of opacity points only.
        if (class_count(f.s, cls) > 0) edpal(f.s, f.b, quiet, f.m, dialogs, r);
    }
    // Every colour line of a point without opacity is a palette colour now.
    for (int32_t row = 0; row < f.s.pt_n; ++row) {
        if (f.s.pt_col[row].find("alpha") != std::string::npos) continue;
        for_each_colour_line(f.s.pt_col[row], [&](uint32_t rgb, std::string_view line) {
            uint32_t c = 0;
            ASSERT_TRUE(text::from_hex(rgb_hex(rgb), c));
            EXPECT_NE(std::find(pal.begin(), pal.end(), c), pal.end()) << line;
        });
    }
    // Where the file's own text reads back to its pictures, so does the
    // converted one.
    ToolFixture original, back;
    text::load_txt(original.s, quiet, GetParam(), read_bytes(GetParam()), false, false);
    ToolFixture original_back;
    text::load_txt(original_back.s, quiet, GetParam(), text_of(original.s, quiet), false, false);
    text::load_txt(back.s, quiet, GetParam(), text_of(f.s, quiet), false, false);
    for (int cls : {model::k_polygons, model::k_lines, model::k_points})
        if (painted(original_back.s, cls) == painted(original.s, cls))
            EXPECT_TRUE(painted(back.s, cls) == painted(f.s, cls)) << cls;
}

INSTANTIATE_TEST_SUITE_P(Corpus, PaletteConversionCorpus, ::testing::ValuesIn(corpus_params(corpus_texts())),
                         [](const auto& info) { return file_param_name(info.param); });

}  // namespace
}  // namespace korvex::workbench

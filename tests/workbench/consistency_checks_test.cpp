// The consistency checks and repairs on small hand-made projects: what each
// finds at its boundaries, what each repair makes of an element, and that a
// No, a Cancel or a refusal leaves the project as it was.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "ops_fixture.h"
#include "platform/files.h"
#include "workbench/basecamp_check.h"
#include "workbench/checks.h"
#include "workbench/icon_painter.h"
#include "workbench/label_tools.h"
#include "workbench/picture_block.h"
#include "workbench/line_check.h"
#include "workbench/session.h"
#include "workbench/side_tools.h"
#include "workbench/spelling.h"
#include "workbench/unused_colours.h"

namespace korvex::workbench {
namespace {

namespace fs = std::filesystem;
using platform::Answer;
using test::OpsFixture;

std::string cc_polygon(const std::string& type, const std::string& xpm, const std::vector<std::string>& colours,
                       const std::vector<std::string>& rows = {}) {
    std::string t = "[_polygon]\r\nType=" + type + "\r\nString1=0x04,Area\r\nXpm=\"" + xpm + "\"\r\n";
    for (const auto& c : colours) t += "\"" + c + "\"\r\n";
    for (const auto& r : rows) t += "\"" + r + "\"\r\n";
    return t + "[end]\r\n";
}

std::vector<std::string> cc_pattern(int height, const std::string& a, const std::string& b) {
    std::vector<std::string> rows;
    for (int y = 0; y < height; ++y) rows.push_back(y % 2 ? a : b);
    return rows;
}

std::string cc_line(const std::string& type, const std::vector<std::string>& colours, const std::vector<std::string>& rows) {
    std::string t = "[_line]\r\nType=" + type + "\r\nString1=0x04,Way\r\nXpm=\"32 " + std::to_string(rows.size()) + " " +
                    std::to_string(colours.size()) + " 1\"\r\n";
    for (const auto& c : colours) t += "\"" + c + "\"\r\n";
    for (const auto& r : rows) t += "\"" + r + "\"\r\n";
    return t + "[end]\r\n";
}

// A point of n colours whose first `used` colours are drawn, one pixel each.
std::string cc_point(int n, int used) {
    const int cpp = n >= model::cpp_limit ? 2 : 1;
    auto sym = [&](int k) { return cpp == 1 ? std::string(1, static_cast<char>('A' + k % 26)) + "" : std::string{static_cast<char>('a' + k / 26), static_cast<char>('a' + k % 26)}; };
    std::string t = "[_point]\r\nType=0x2f00\r\nString1=0x04,Spot\r\nDayXpm=\"" + std::to_string(used) + " 1 " +
                    std::to_string(n) + " " + std::to_string(cpp) + "\" Colormode=0\r\n";
    for (int k = 0; k < n; ++k) {
        char hex[8];
        std::snprintf(hex, sizeof hex, "%06X", 0x010203 * (k + 1));
        t += "\"" + sym(k) + " c #" + hex + "\"\r\n";
    }
    std::string row;
    for (int k = 0; k < used; ++k) row += sym(k);
    return t + "\"" + row + "\"\r\n[end]\r\n";
}

const std::string k_row_ones(32, '1');
const std::string k_row_zeros(32, '0');
const std::string k_row_mixed = "01010101010101010101010101010101";

struct CcFolder {
    fs::path root = fs::temp_directory_path() / ("korvex_checks_" + std::to_string(::getpid()));
    CcFolder() {
        fs::remove_all(root);
        fs::create_directories(root / "system" / "bin");
    }
    ~CcFolder() { fs::remove_all(root); }
};

// ---- unused colours ---------------------------------------------------------

TEST(UnusedColours, EqualPairsAndUnusedKeysAreFoundAndRepairedToFewerColours) {
    struct Case {
        std::string name, section, found;
        int ncol_after;  // -1: nothing to repair
    };
    const std::string red = "0 c #FF0000", red1 = "1 c #FF0000", blue1 = "1 c #0000FF";
    const std::vector<Case> cases = {
        {"solid day and night alike", cc_polygon("0x03", "0 0 2 0", {red, red1}), "1 0x0300 1 (same colour)", 1},
        {"solid day and night differ", cc_polygon("0x03", "0 0 2 0", {red, blue1}), "", -1},
        {"pattern of one colour twice", cc_polygon("0x03", "32 32 2 1", {red, red1}, cc_pattern(32, k_row_mixed, k_row_mixed)),
         "1 0x0300 1 (same colour)", 1},
        {"pattern of day pair and night pair",
         cc_polygon("0x03", "32 32 4 1", {red, red1, "2 c #00FF00", "3 c #00FF00"}, cc_pattern(32, k_row_mixed, k_row_mixed)),
         "1 0x0300 1 (same colour)", 2},
        {"pattern using only its foreground",
         cc_polygon("0x03", "32 32 2 1", {red, blue1}, cc_pattern(32, k_row_ones, k_row_ones)), "1 0x0300 0", 1},
        {"transparent pair is no waste", cc_polygon("0x03", "32 32 2 1", {"0 c none", blue1}, cc_pattern(32, k_row_mixed, k_row_ones)),
         "", -1},
        {"only the transparent colour drawn", cc_polygon("0x03", "32 32 2 1", {"0 c none", blue1}, cc_pattern(32, k_row_zeros, k_row_zeros)),
         "", -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        OpsFixture f;
        f.load(c.section);
        const std::string report = checkcols(f.s, model::k_polygons);
        if (c.found.empty()) {
            EXPECT_EQ(report, "");
        } else {
            EXPECT_EQ(report, "UNUSED COLOURS: Polygons\r\n" + c.found + "\r\n");
        }
        const uint32_t bg = 0xFFF0F0F0u;
        const Raster day = paintpgn(f.s, 0, bg), night = paintpgn(f.s, 0, bg, true);
        EXPECT_EQ(redun(f.s, model::k_polygons), c.ncol_after < 0 ? 0 : 1);
        if (c.ncol_after > 0) {
            EXPECT_EQ(f.s.pg_ncol[0], c.ncol_after);
            EXPECT_TRUE(f.s.pg_bmp[0].empty());
            EXPECT_NE(f.s.pg_txt[0].find("Xpm=\"0 0 " + std::to_string(c.ncol_after) + " 0\""), std::string::npos);
        }
        EXPECT_EQ(paintpgn(f.s, 0, bg).px, day.px);
        EXPECT_EQ(paintpgn(f.s, 0, bg, true).px, night.px);
        EXPECT_EQ(checkcols(f.s, model::k_polygons), "");
    }
}

TEST(UnusedColours, ABitmapLineOfOneKeyBecomesALineAsHighAsItsRows) {
    OpsFixture f;
    f.load(cc_line("0x05", {"0 c #112233", "1 c #445566"}, {k_row_zeros, k_row_zeros, k_row_zeros}), model::k_lines);
    EXPECT_EQ(checkcols(f.s, model::k_lines), "UNUSED COLOURS: Lines\r\n1 0x00500 1\r\n");
    EXPECT_EQ(redun(f.s, model::k_lines), 1);
    EXPECT_LT(f.s.ln_mode[0], 8);
    EXPECT_EQ(f.s.ln_wid[0], 3);
    EXPECT_EQ(f.s.ln_bord[0], 0);
    EXPECT_EQ(f.s.ln_ncol[0], 1);
    EXPECT_EQ(f.s.ln_bmp[0], k_row_zeros + "\r\n" + k_row_zeros + "\r\n" + k_row_zeros);
}

// Below 32 colours a pixel is one character, from 32 on two: a repair that
// crosses the line rewrites the rows, one that stays above keeps two.
TEST(UnusedColours, PointSymbolsChangeExactlyWhenTheTableFallsBelow32) {
    struct Case {
        int n, used, cpp_after;
    };
    for (const Case c : {Case{33, 32, 2}, Case{33, 31, 1}, Case{32, 31, 1}, Case{3, 2, 1}}) {
        SCOPED_TRACE(std::to_string(c.n) + " colours, " + std::to_string(c.used) + " used");
        OpsFixture f;
        f.load(cc_point(c.n, c.used), model::k_points);
        const uint32_t bg = 0xFFF0F0F0u;
        const Raster before = paintpoi(f.s, 0, bg);
        ASSERT_EQ(before.w, c.used);
        const ColourCheck found = unused_colour_check(f.s, model::k_points);
        // One finding for the point, naming each unused key after "unused".
        ASSERT_EQ(found.findings.size(), 1u);
        const std::string& named = found.findings[0].message;
        EXPECT_EQ(std::count(named.begin(), named.end(), ' '), c.n - c.used) << named;
        EXPECT_EQ(redun(f.s, model::k_points), 1);
        EXPECT_EQ(f.s.pt_ncol[0], c.used);
        const std::string first_row = f.s.pt_bmp[0].substr(0, f.s.pt_bmp[0].find('\r'));
        EXPECT_EQ(first_row.size(), static_cast<size_t>(c.used * c.cpp_after));
        EXPECT_EQ(paintpoi(f.s, 0, bg).px, before.px);
        EXPECT_TRUE(unused_colour_check(f.s, model::k_points).empty());
    }
}

// A picture block takes as many rows as its head says, no more, and no more
// than the section holds; quoted lines never pass for a head.
TEST(PictureBlock, RowsStopAtTheHeightOrTheSectionsEnd) {
    const std::vector<std::string> lines = {"Type=0x2f00", "\"DayXpm=\"", "DayXpm=\"2 2 2 1\" Colormode=16",
                                            "\"$ c #FF0000\"", "\"% c none\"", "\"$%\"", "\"%$\"", "\"$$\""};
    const PictureBlock b = find_picture(lines, {"dayxpm="});
    EXPECT_EQ(b.head, 2);
    EXPECT_EQ(b.width, 2);
    EXPECT_EQ(b.colour_lines, 2);
    EXPECT_EQ(b.first_row, 5);
    EXPECT_EQ(b.row_lines, 2);
    const std::vector<std::string> cut(lines.begin(), lines.begin() + 6);
    const PictureBlock short_block = find_picture(cut, {"dayxpm="});
    EXPECT_EQ(short_block.row_lines, 1);
    EXPECT_EQ(find_picture(lines, {"nightxpm="}).head, -1);
}

// An extra point sits behind the ordinary ones: the first of them is found
// and repaired as itself, and the last ordinary point stays as it was.
TEST(UnusedColours, TheFirstExtraPointIsRepairedAsItself) {
    OpsFixture f;
    std::string extra = cc_point(3, 2);
    extra.replace(extra.find("Type=0x2f00"), 11, "ID=0x11501");
    f.load(cc_point(3, 3) + extra, model::k_points);
    ASSERT_EQ(f.s.pt_n, 1);
    ASSERT_EQ(f.s.pt_nx, 1);
    const model::Store before = f.s;
    const ColourCheck found = unused_colour_check(f.s, model::k_points);
    ASSERT_EQ(found.findings.size(), 1u);
    EXPECT_EQ(found.lines.substr(0, 2), "2 ");
    EXPECT_EQ(redun(f.s, model::k_points), 1);
    EXPECT_EQ(f.s.pt_n, 1);
    EXPECT_EQ(f.s.pt_nx, 1);
    EXPECT_EQ(f.s.pt_txt[0], before.pt_txt[0]);
    EXPECT_EQ(f.s.pt_typ[1], before.pt_typ[1]);
    EXPECT_EQ(f.s.pt_ncol[1], 2);
}

TEST(UnusedColours, PointsWithOpacityAreLeftAlone) {
    OpsFixture f;
    f.load("[_point]\r\nType=0x2f00\r\nDayXpm=\"1 1 2 1\" Colormode=32\r\n\"! c #FF0000\" alpha=3\r\n\"# c #00FF00\" alpha=0\r\n\"!\"\r\n[end]\r\n",
           model::k_points);
    EXPECT_EQ(checkcols(f.s, model::k_points), "");
    EXPECT_EQ(redun(f.s, model::k_points), 0);
}

TEST(FixUnusedColours, RefusalsNoAndYes) {
    CcFolder dir;
    const std::string waste = cc_polygon("0x03", "0 0 2 0", {"0 c #FF0000", "1 c #FF0000"});
    {
        OpsFixture f;
        f.load(waste);
        EXPECT_FALSE(fix_unused_colours(f.s, f.ui, dir.root.string(), true));
        EXPECT_EQ(f.ui.messages, std::vector<std::string>{"Change to Polygons."});
    }
    {
        OpsFixture f;
        f.load(cc_polygon("0x03", "0 0 1 0", {"0 c #FF0000"}));
        EXPECT_FALSE(fix_unused_colours(f.s, f.ui, dir.root.string(), false));
        EXPECT_EQ(f.ui.messages, std::vector<std::string>{"No unused colours found."});
        EXPECT_TRUE(f.ui.reports.empty());
    }
    {
        OpsFixture f;
        f.load(waste);
        const std::string before = f.text();
        f.ui.script(Answer::no);
        EXPECT_FALSE(fix_unused_colours(f.s, f.ui, dir.root.string(), false));
        EXPECT_EQ(f.ui.questions, std::vector<std::string>{"Remove unused colours?"});
        EXPECT_EQ(f.text(), before);
        EXPECT_FALSE(f.s.dirty);
        ASSERT_EQ(f.ui.reports.size(), 1u);
        const std::string report = "chc0\r\nUNUSED COLOURS: Polygons\r\n1 0x0300 1 (same colour)\r\nchc1\r\nchc2\r\n";
        EXPECT_EQ(f.ui.reports[0].text, report);
        EXPECT_EQ(platform::read_file((dir.root / "system" / "bin" / "colorcheck.txt").string()).value_or(""), report);
    }
    {
        OpsFixture f;
        f.load(waste);
        EXPECT_TRUE(fix_unused_colours(f.s, f.ui, dir.root.string(), false));
        EXPECT_TRUE(f.s.dirty);
        EXPECT_EQ(f.ui.messages.back(), "Unused colours have been removed.");
        EXPECT_EQ(f.s.pg_ncol[0], 1);
    }
}

TEST(Finchk, WarnsJointlyOnlyWithThePreferenceOn) {
    CcFolder dir;
    const std::string path = (dir.root / "waste.txt").string();
    // The point's head says three rows where it has two: the load repairs it.
    const std::string body = std::string(test::k_head) + cc_polygon("0x03", "0 0 2 0", {"0 c #FF0000", "1 c #FF0000"}) +
                             cc_line("0x05", {"0 c #112233", "1 c #445566"}, {k_row_ones, k_row_zeros, k_row_zeros, k_row_ones}) +
                             "[_point]\r\nType=0x2f01\r\nDayXpm=\"1 3 1 1\" Colormode=0\r\n\"! c #FF0000\"\r\n\"!\"\r\n\"!\"\r\n[end]\r\n";
    ASSERT_TRUE(platform::write_file_atomic(path, body));
    for (const int option : {0, 1}) {
        SCOPED_TRACE(option);
        model::Store s;
        AppSettings settings;
        settings.unused_colour_check = option;
        integration::Messages msgs;
        platform::ScriptedPrompt ui;
        platform::ScriptedFileDialog dialogs;
        platform::RecordingLauncher launcher;
        platform::FixedClock clock{testing::k_fixed_stamp};
        RecordingView view;
        Session session{s, settings, msgs, ui, dialogs, launcher, clock, dir.root.string(), view};
        session.start();
        ui.messages.clear();
        ASSERT_TRUE(session.open_path(path));
        if (option == 0) {
            EXPECT_TRUE(ui.messages.empty());
            continue;
        }
        ASSERT_EQ(ui.messages.size(), 1u);
        EXPECT_EQ(ui.messages[0],
                  "Found Polygons with unused colours.\r\nGo Tools -->Fix Unused Colours\r\n"
                  "Found Lines which could be converted to non-bitmap\r\nTools --> Check Lines ...\r\n"
                  "Cancel message in Preference --> Elements.\r\n"
                  "Fixed Pois with xpm and bmp not matching. Please Check txt file:\r\n02F01\r\n");
    }
}

// ---- lines that could be plain --------------------------------------------

TEST(LineCheck, OnlyBorderLineBorderOfEqualBordersQualifies) {
    const std::string c0 = "0 c #112233", c1 = "1 c #445566";
    struct Case {
        std::string name;
        std::vector<std::string> colours, rows;
        bool qualifies;
    };
    const std::vector<Case> cases = {
        {"border, line, border", {c0, c1}, {k_row_ones, k_row_zeros, k_row_zeros, k_row_ones}, true},
        {"inverted keys", {c0, c1}, {k_row_zeros, k_row_ones, k_row_zeros}, true},
        {"borders of unequal height", {c0, c1}, {k_row_ones, k_row_zeros, k_row_ones, k_row_ones}, false},
        {"a fourth run", {c0, c1}, {k_row_ones, k_row_zeros, k_row_ones, k_row_zeros}, false},
        {"two runs", {c0, c1}, {k_row_ones, k_row_zeros}, false},
        {"a patterned row", {c0, c1}, {k_row_ones, k_row_mixed, k_row_ones}, false},
        {"a transparent colour", {c0, "1 c none"}, {k_row_ones, k_row_zeros, k_row_ones}, false},
        {"night colours", {c0, c1, "2 c #000000", "3 c #FFFFFF"}, {k_row_ones, k_row_zeros, k_row_ones}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        OpsFixture f;
        f.load(cc_line("0x05", c.colours, c.rows), model::k_lines);
        EXPECT_EQ(convertible_lines(f.s).size(), c.qualifies ? 1u : 0u);
        EXPECT_EQ(linecheck(f.s),
                  c.qualifies ? "Lines are rendered clearer and quicker when converted to non-bitmap:\r\n0x00500\r\n" : "");
        const std::string before = f.text();
        EXPECT_EQ(convert_to_non_bitmap(f.s, 0), c.qualifies);
        if (!c.qualifies) EXPECT_EQ(f.text(), before);
    }
}

TEST(LineCheck, ConversionTakesWidthAndBorderFromTheRuns) {
    OpsFixture f;
    f.load(cc_line("0x05", {"0 c #112233", "1 c #445566"}, {k_row_zeros, k_row_zeros, k_row_ones, k_row_ones, k_row_ones, k_row_zeros, k_row_zeros}),
           model::k_lines);
    ASSERT_TRUE(convert_to_non_bitmap(f.s, 0));
    EXPECT_EQ(f.s.ln_wid[0], 3);
    EXPECT_EQ(f.s.ln_bord[0], 2);
    // The line is drawn in the colour of the middle rows, the border in the outer.
    EXPECT_NE(f.s.ln_col[0].find("0 c #445566"), std::string::npos);
    EXPECT_NE(f.s.ln_col[0].find("1 c #112233"), std::string::npos);
}

TEST(LineCheck, FlowSaysNoneFoundOrAsksAndNoChangesNothing) {
    CcFolder dir;
    {
        OpsFixture f;
        f.load(cc_line("0x05", {"0 c #112233", "1 c #445566"}, {k_row_mixed}), model::k_lines);
        EXPECT_FALSE(check_lines_flow(f.s, f.ui, dir.root.string()));
        EXPECT_EQ(f.ui.messages, std::vector<std::string>{"None found."});
    }
    OpsFixture f;
    f.load(cc_line("0x05", {"0 c #112233", "1 c #445566"}, {k_row_ones, k_row_zeros, k_row_ones}), model::k_lines);
    const std::string before = f.text();
    for (const Answer a : {Answer::no, Answer::cancel}) {
        f.ui.script(a);
        EXPECT_FALSE(check_lines_flow(f.s, f.ui, dir.root.string()));
        EXPECT_EQ(f.text(), before);
        EXPECT_FALSE(f.s.dirty);
    }
    EXPECT_EQ(f.ui.questions.back(), "Reload TYP file to undo changes.\r\n\r\nContinue?");
    EXPECT_TRUE(fs::exists(dir.root / "system" / "bin" / "linecheck.txt"));
    EXPECT_TRUE(check_lines_flow(f.s, f.ui, dir.root.string()));
    EXPECT_TRUE(f.s.dirty);
}

// ---- Basecamp ---------------------------------------------------------------

TEST(Basecamp, RangesAreHalfOpenAndTheListsPass) {
    struct Case {
        int32_t code;
        bool shown;
    };
    const Case cases[] = {
        {0x2F00, true},   {0x2F01, false},  {0xFFFF, false},  {0x10000, true},  {0x101FF, true},
        {0x10200, true},  {0x10201, false}, {0x102FF, false}, {0x10300, true},  {0x10905, true},
        {0x10906, false}, {0x109FF, false}, {0x10A00, true},  {0x10B01, true},  {0x10B02, false},
        {0x10B05, false}, {0x10BFF, false}, {0x10C00, true},  {0x1080E, true},  {0x1081F, true},
        {0x01700, true},  {0x02C00, true},
    };
    for (const Case& c : cases) EXPECT_EQ(basecamp_shows_line(c.code), c.shown) << std::hex << c.code;
}

TEST(Basecamp, ReportListsHiddenLinesOrSaysAllVisible) {
    OpsFixture f;
    f.load(test::line("0x10200", "Listed") + test::line("0x10201", "Hidden") + test::line("0x01", "Road"), model::k_lines);
    EXPECT_EQ(chk_basecamp(f.s), "Not visible in Basecamp:\r\n0x10201\r\n");
    const Findings found = basecamp_findings(f.s);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].check, "basecamp-invisible");
    OpsFixture clean;
    clean.load(test::line("0x01", "Road"), model::k_lines);
    EXPECT_EQ(chk_basecamp(clean.s), "All lines are visible\r\n");
}

// ---- spelling ---------------------------------------------------------------

TEST(Spelling, WordsAreSplitAsTheCheckReadsThem) {
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"Bus Stop", {"bus", "stop"}},
        {"Rock&Roll (Club)", {"rock", "roll", "club"}},
        {"North-West Gate", {"north", "west", "gate"}},
        {"Check-in", {"check-in"}},
        {"name=Park  \"Old\"", {"name", "old"}},
        {"A1: 12", {"a1"}},
        {"\xC3\x84rger", {"\xC3\xA4rger"}},
        // The Latin-1 capitals from À to Þ fold, the sign × between them stays.
        {"\xC3\x80\xC3\x97\xC3\x9E", {"\xC3\xA0\xC3\x97\xC3\xBE"}},
    };
    for (const auto& [label, words] : cases) EXPECT_EQ(label_words(label), words) << label;
}

TEST(Spelling, PluralPassesAndTheHeadingNamesTheDictionary) {
    CcFolder dir;
    const std::string path = (dir.root / "words.dic").string();
    ASSERT_TRUE(platform::write_file_atomic(path, "Map\r\nstop\nbus\n"));
    std::optional<Dictionary> d = read_dictionary(path);
    ASSERT_TRUE(d);
    EXPECT_TRUE(d->has("map"));
    EXPECT_TRUE(d->has("maps"));
    EXPECT_FALSE(d->has("mapss"));
    EXPECT_FALSE(d->has("s"));
    OpsFixture f;
    f.load(test::polygon("0x03", "Maps Stops Bsu"));
    f.s.opt.langid = 4;
    d->language = 2;
    f.s.opt.langname = "English";
    EXPECT_EQ(spelchk(f.s, model::k_polygons, *d),
              "Dictionary used: " + path + "\r\n(Dictionary MUST match English)\r\n0x0300 bsu\r\n");
    EXPECT_FALSE(read_dictionary((dir.root / "none.dic").string()));
}

// The distribution's word lists, where installed, read in the same format.
TEST(Spelling, SystemWordListsReadWithTheirAccents) {
    const struct {
        int entry;
        const char* words[3];
    } lists[] = {{0, {"map", "roads", "church"}}, {1, {"karte", "stra\xC3\x9F" "e", "\xC3\xBC" "ber"}}};
    for (const auto& l : lists) {
        const std::string path = dictionary_candidates(l.entry, "/nonexistent", "", "").back();
        if (!fs::exists(path)) GTEST_SKIP() << path << " is not installed";
        const std::optional<Dictionary> d = read_dictionary(path);
        ASSERT_TRUE(d);
        for (const char* w : l.words) EXPECT_TRUE(d->has(w)) << w;
        EXPECT_FALSE(d->has("qzxv"));
    }
}

// A label in bytes of the project's page meets a UTF-8 word list.
TEST(Spelling, LabelsOfTheCodePageMeetTheListInUtf8) {
    CcFolder dir;
    const std::string path = (dir.root / "de.dic").string();
    ASSERT_TRUE(platform::write_file_atomic(path, "Geb\xC3\xA4ude\n"));
    std::optional<Dictionary> d = read_dictionary(path);
    ASSERT_TRUE(d);
    d->language = 2;
    OpsFixture f;
    f.load("[_polygon]\r\nType=0x03\r\nString1=0x02,Geb\xE4ude Stra\xDF" "e\r\nString2=0x04,Building\r\n"
           "Xpm=\"0 0 1 0\"\r\n\"0 c #FF0000\"\r\n[end]\r\n");
    f.s.opt.langid = 2;
    const Findings found = spelling_findings(f.s, model::k_polygons, *d);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].message, "stra\xC3\x9F" "e");
}

TEST(Spelling, MissingDictionarySaysWhereItLooked) {
    CcFolder dir;
    OpsFixture f;
    f.load(test::polygon("0x03", "Park"));
    const std::string custom = (dir.root / "custom.dic").string();
    spelling_flow(f.s, f.ui, 2, dir.root.string(), "", custom);
    EXPECT_EQ(f.ui.messages, std::vector<std::string>{"Cannot find " + custom});
    EXPECT_TRUE(f.ui.reports.empty());
    OpsFixture empty;
    empty.load("", model::k_lines);
    spelling_flow(empty.s, empty.ui, 2, dir.root.string(), "", custom);
    EXPECT_EQ(empty.ui.messages, std::vector<std::string>{"No data."});
}

// ---- labels -----------------------------------------------------------------

// The style import puts the tag in front of the first label, or adds a
// label of its own to an element without one.
TEST(RemoveNotInStyle, TakesBackWhatTheStyleImportMarked) {
    const std::string bare = cc_polygon("0x05", "0 0 1 0", {"0 c #00FF00"});
    std::string tagged_bare = bare;
    tagged_bare.replace(tagged_bare.find("String1=0x04,Area"), 17, "String1=0x00,NOT in STYLE ");
    OpsFixture f;
    f.load(test::polygon("0x03", "NOT in STYLE Park") + tagged_bare + test::polygon("0x06", "Kept"));
    OpsFixture clean;
    std::string untagged_bare = bare;
    untagged_bare.erase(untagged_bare.find("String1=0x04,Area\r\n"), 19);
    clean.load(test::polygon("0x03", "Park") + untagged_bare + test::polygon("0x06", "Kept"));
    EXPECT_EQ(remnotis(f.s, f.ui), 2);
    EXPECT_EQ(f.ui.messages, std::vector<std::string>{"2 Found"});
    EXPECT_EQ(f.text(), clean.text());
    EXPECT_TRUE(f.s.dirty);

    OpsFixture empty;
    empty.load("", model::k_points);
    EXPECT_EQ(remnotis(empty.s, empty.ui), 0);
    EXPECT_EQ(empty.ui.messages, std::vector<std::string>{"No data."});
}

TEST(ExtraLabels, NoBlockSaysSo) {
    OpsFixture f;
    f.load(test::point("0x2f00", "Spot"), model::k_points);
    extra_poi_labels(f.s, f.ui, "");
    EXPECT_EQ(f.ui.messages, std::vector<std::string>{"No Extra Label Data Found."});
}

// ---- side tools -------------------------------------------------------------

TEST(StyleEditor, LocatePromptCancelWrongNameAndFound) {
    CcFolder dir;
    const std::string exe = (dir.root / "Forvane.exe").string();
    ASSERT_TRUE(platform::write_file_atomic(exe, "x"));
    platform::ScriptedPrompt ui;
    platform::RecordingLauncher launcher;
    platform::ScriptedFileDialog dialogs;
    std::string path;
    EXPECT_FALSE(load_style_editor(path, ui, dialogs, launcher));  // cancelled
    dialogs.script((dir.root / "other.exe").string());
    EXPECT_FALSE(load_style_editor(path, ui, dialogs, launcher));
    EXPECT_EQ(ui.messages, std::vector<std::string>{"Please locate Style Editor.Settings --> Preferences"});
    EXPECT_EQ(path, "");
    dialogs.script(exe);
    EXPECT_TRUE(load_style_editor(path, ui, dialogs, launcher));
    EXPECT_EQ(path, exe);
    EXPECT_EQ(launcher.opened, std::vector<std::string>{exe});
    EXPECT_TRUE(load_style_editor(path, ui, dialogs, launcher));  // known now: no prompt
    EXPECT_EQ(dialogs.calls.size(), 3u);
    EXPECT_EQ(dialogs.calls[0].title, "Please find a Forvane.exe file.");
}

TEST(SearchCategories, RowsTakeIndexOrderOnce) {
    OpsFixture f;
    f.load(test::point("0x2f01", "B") + test::point("0x2a00", "A") + test::point("0x2f00", "C"), model::k_points);
    EXPECT_TRUE(sort_search_categories(f.s, f.ui));
    EXPECT_EQ(f.s.pt_typ[0] + f.s.pt_typ[1] + f.s.pt_typ[2], "02A0002F0002F01");
    EXPECT_TRUE(f.s.dirty);
    f.s.dirty = false;
    EXPECT_FALSE(sort_search_categories(f.s, f.ui));
    EXPECT_FALSE(f.s.dirty);
}

// ---- all at once ------------------------------------------------------------

// Elements of random colours and rows: no check or repair fails on them,
// the repairs leave the same pictures and nothing more to repair. A few
// rounds get junk rows or junk colour tables, which must only not fail.
TEST(ConsistencyFindings, RandomElementsRepairToTheSamePictures) {
    std::mt19937 rng(19);
    const auto junk = [&](unsigned most) {
        std::string t(rng() % most, ' ');
        for (char& c : t) c = static_cast<char>(rng() % 256);
        return t;
    };
    const auto colour = [&] {
        const char* values[] = {"#FF0000", "#0000FF", "none"};
        return std::string(values[rng() % 3]);
    };
    const auto rows = [&](const std::string& keys, int n, int width) {
        std::string out;
        for (int y = 0; y < n; ++y) {
            const bool flat = rng() % 2;
            const char first = keys[rng() % keys.size()];
            std::string row;
            for (int x = 0; x < width; ++x) row += flat ? first : keys[rng() % keys.size()];
            out += "\"" + row + "\"\r\n";
        }
        return out;
    };
    const auto table = [&](int n, const std::string& keys) {
        std::string out;
        for (int k = 0; k < n; ++k) out += "\"" + std::string(1, keys[static_cast<size_t>(k)]) + " c " + colour() + "\"\r\n";
        return out;
    };
    int found = 0;
    for (int round = 0; round < 400; ++round) {
        const bool odd = round % 10 == 9;
        const bool pattern = rng() % 2;
        // Three colours too: a night colour whose partner is left unnamed.
        const int pn = pattern ? 2 + static_cast<int>(rng() % 3) : 1 + static_cast<int>(rng() % 2);
        const int ln = 2 + static_cast<int>(rng() % 3), lh = 1 + static_cast<int>(rng() % 5);
        const int pc = 1 + static_cast<int>(rng() % 4);
        std::string text = "[_polygon]\r\nType=0x03\r\nXpm=\"" + std::string(pattern ? "32 32 " : "0 0 ") +
                           std::to_string(pn) + (pattern ? " 1" : " 0") + "\"\r\n" + table(pn, "0123") +
                           (pattern ? rows("01", 32, 32) : "") + "[end]\r\n";
        text += "[_line]\r\nType=0x05\r\nXpm=\"32 " + std::to_string(lh) + " " + std::to_string(ln) + " 1\"\r\n" +
                (odd ? junk(60) + "\r\n" : table(ln, "0123")) + rows("01", lh, 32) + "[end]\r\n";
        text += "[_point]\r\nType=0x2f00\r\nDayXpm=\"4 3 " + std::to_string(pc) + " 1\"\r\n" + table(pc, "!#$%") +
                (odd ? "\"" + junk(12) + "\"\r\n" : rows(std::string("!#$%").substr(0, static_cast<size_t>(pc)), 3, 4)) +
                "[end]\r\n";
        OpsFixture f;
        f.load(text);
        found += static_cast<int>(consistency_findings(f.s).size());
        const auto paint_all = [&] {
            std::vector<std::vector<uint32_t>> out;
            for (int cls = model::k_polygons; cls <= model::k_points; ++cls) {
                const int32_t n = cls == model::k_polygons ? f.s.pg_n : cls == model::k_lines ? f.s.ln_n : f.s.pt_n;
                for (int32_t r = 0; r < n; ++r)
                    for (const bool night : {false, true}) out.push_back(paint_element(f.s, cls, r, 0xFF000000u, night).px);
            }
            return out;
        };
        const auto before = paint_all();
        for (const int32_t r : convertible_lines(f.s)) convert_to_non_bitmap(f.s, r);
        for (int cls = model::k_polygons; cls <= model::k_points; ++cls) redun(f.s, cls);
        EXPECT_TRUE(paint_all() == before) << text;
        if (odd) continue;
        for (int cls = model::k_polygons; cls <= model::k_points; ++cls) EXPECT_EQ(checkcols(f.s, cls), "") << text;
    }
    EXPECT_GT(found, 100);  // the rounds do reach the repairs
}

TEST(ConsistencyFindings, EachPlantedFaultOnceWithItsType) {
    OpsFixture f;
    f.load(cc_polygon("0x03", "0 0 2 0", {"0 c #FF0000", "1 c #FF0000"}) +
           cc_line("0x05", {"0 c #112233", "1 c #445566"}, {k_row_ones, k_row_zeros, k_row_ones}) +
           test::line("0x10201", "Hidden"));
    const Findings found = consistency_findings(f.s);
    std::vector<std::string> got;
    for (const Finding& x : found) got.push_back(std::to_string(x.cls) + " " + x.type + " " + x.check);
    EXPECT_EQ(got, (std::vector<std::string>{"0 0x0300 unused-colours", "1 0x00500 non-bitmap-line",
                                             "1 0x10201 basecamp-invisible"}));
}

}  // namespace
}  // namespace korvex::workbench

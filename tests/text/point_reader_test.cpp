// The point reader: normalisations of hand-made sections with exact columns,
// and decoded corpus points read back from their text.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>

#include "support/harness.h"
#include "text/point_reader.h"
#include "text/text_writer.h"
#include "typ/curf_access.h"
#include "typ/point_record.h"

using namespace korvex;
using namespace korvex::testing;

namespace {

struct Parsed {
    model::Store s;
    platform::ScriptedPrompt ui;
    explicit Parsed(const std::string& section) {
        model::procredim(s, model::k_points, 1);
        text::poiparse(s, ui, section, 0, true);
    }
};

// Symbol of colour v: canonical, or as another tool writes them ('A'.. or
// "a0"..).
std::string symbol(int v, int cpp, bool canonical) {
    if (canonical) return cpp == 1 ? std::string(1, static_cast<char>(v + 36))
                                   : std::string{static_cast<char>(v / 16 + 36), static_cast<char>(v % 16 + 36)};
    return cpp == 1 ? std::string(1, static_cast<char>('A' + v))
                    : std::string{static_cast<char>('a' + v / 10), static_cast<char>('0' + v % 10)};
}

// A row of n pixels cycling through the colours.
std::string symbols_row(int n, int colours, int cpp, bool canonical) {
    std::string row;
    for (int x = 0; x < n; ++x) row += symbol(x % colours, cpp, canonical);
    return row;
}

std::string colour_table(int colours, int cpp, const std::string& behind = "") {
    std::string out;
    for (int k = 0; k < colours; ++k) {
        char value[8];
        std::snprintf(value, sizeof value, "%06X", k * 0x010203);
        out += '"';
        out += symbol(k, cpp, false);
        out += "\tc #";
        out += value;
        out += '"';
        out += behind;
        out += '\n';
    }
    return out;
}

}  // namespace

TEST(PointReader, ThirtyOneColoursInTwoCharactersCollapseToOne) {
    const std::string section = "[_point]\nType=0x2f00\nXpm=\"31 1 31 2\"\n" + colour_table(31, 2, "  canalalpha=3") +
                                "\"" + symbols_row(31, 31, 2, false) + "\"\n[end]\n";
    Parsed p(section);
    EXPECT_EQ(p.s.pt_xpm[0], "DayXpm=\"31 1 31 1\" Colormode=32");
    EXPECT_EQ(p.s.pt_bmp[0], symbols_row(31, 31, 1, true) + "\r\n");
    EXPECT_EQ(p.s.pt_ncol[0], 31);
    EXPECT_EQ(p.s.pt_col[0].substr(0, 48), "\"$ c #000000\" alpha=3\r\n\"% c #010203\" alpha=3\r\n\"&");
}

TEST(PointReader, ThirtyTwoColoursInOneCharacterExpandToTwo) {
    const std::string section = "[_point]\nType=0x2f00\nDayXpm=\"32 1 32 1\"\n" + colour_table(32, 1) + "\"" +
                                symbols_row(32, 32, 1, false) + "\"\n[end]\n";
    Parsed p(section);
    EXPECT_EQ(p.s.pt_xpm[0], "DayXpm=\"32 1 32 2\" Colormode=0");
    EXPECT_EQ(p.s.pt_bmp[0], symbols_row(32, 32, 2, true) + "\r\n");
    EXPECT_EQ(p.s.pt_col[0].substr(0, 30), "\"$$ c #000000\"\r\n\"$% c #010203\"");
}

TEST(PointReader, MkgmapDialectReadsAsMkgmapCompilesIt) {
    // Tabs, #RRGGBBAA, a separate subtype, a head without Colormode.
    Parsed p("[_point]\nType=0x2f\nSubType=0x01\nString=0x04,Hut\nXpm=\"4 1 4 1\"\n\"a\tc #19898900\"\n"
             "\"b\tc #198989ff\"\n\"c c #19898980\"\n\"d\tc #198989\"\n\"abcd\",\n[end]\n");
    EXPECT_EQ(p.s.pt_typ[0], "02F01");
    EXPECT_EQ(p.s.pt_col[0],
              "\"$ c #198989\" alpha=15\r\n\"% c #198989\" alpha=0\r\n\"& c #198989\" alpha=7\r\n\"' c #198989\" alpha=0\r\n");
    EXPECT_EQ(p.s.pt_bmp[0], "$%&'\r\n");
    EXPECT_EQ(p.s.pt_xpm[0], "DayXpm=\"4 1 4 1\" Colormode=32");
}

TEST(PointReader, OldStylePictureLinesBecomeBareColours) {
    Parsed p("[_point]\nType=0x2f00\n;hand-made\nDayXpm=\"2 2 0 0\"\n;Colours\n;bitmap\n#ff0000#00FF00\n#0000FF#FFFFFF0F\n[end]\n");
    EXPECT_EQ(p.s.pt_txt[0].substr(0, 38), "[_point]\r\nType=0x2f00\r\n;hand-made\r\nDay");
    EXPECT_EQ(p.s.pt_col[0], "\"#FF0000\"\r\n\"#00FF00\"\r\n\"#0000FF\"\r\n\"#FFFFFF\" alpha=15\r\n");
    EXPECT_EQ(p.s.pt_bmp[0], "");
    EXPECT_EQ(p.s.pt_ncol[0], 0);
    EXPECT_EQ(p.s.pt_xpm[0], "DayXpm=\"2 2 0 1\" Colormode=32");
}

TEST(PointReader, NightPictureStandsBehindTheDayColours) {
    Parsed p("[_point]\nType=0x2f00\nDayXpm=\"2 1 2 1\"\n\"a c #FF0000\"\n\"b c none\"\n\"ab\"\n"
             "NightXpm=\"2 1 2 2\"   Colormode=16\n\"!!\tc #888888\"  canalalpha=15\n\"##\tc #bbbb99\"  canalalpha=1\n\"!!##\"\n[end]\n");
    EXPECT_EQ(p.s.pt_col[0], "\"$ c #FF0000\"\r\n\"% c none\"\r\n\r\nNightXpm=\"2 1 2 1\" Colormode=32\r\n"
                             "\"$ c #888888\" alpha=15\r\n\"% c #BBBB99\" alpha=1");
    EXPECT_EQ(p.s.pt_nbmp[0], "$%\r\n");
    EXPECT_EQ(p.s.pt_nncol[0], 2);
    EXPECT_EQ(p.s.pt_nnight, 1);
    EXPECT_EQ(p.s.pt_lab[0].substr(0, 2), std::string("\x01\x01", 2));
    EXPECT_EQ(p.s.pt_xpm[0], "DayXpm=\"2 1 2 1\" Colormode=16");
}

TEST(PointReader, NightFlagOffDropsTheNightPicture) {
    model::Store s;
    platform::ScriptedPrompt ui;
    s.ldopts = "111110";
    model::procredim(s, model::k_points, 1);
    text::poiparse(s, ui, "[_point]\nType=0x2f00\nDayXpm=\"1 1 1 1\"\n\"a c #FF0000\"\n\"a\"\n"
                          "NightXpm=\"1 1 1 1\"\n\"b c #00FF00\"\n\"b\"\n[end]\n", 0, true);
    EXPECT_EQ(s.pt_col[0], "\"$ c #FF0000\"\r\n");
    EXPECT_EQ(s.pt_nbmp[0], "");
    EXPECT_EQ(s.pt_nncol[0], 0);
    EXPECT_EQ(s.pt_nnight, 0);
    EXPECT_EQ(s.pt_lab[0][0], '\0');
}

TEST(PointReader, NightRowOfWrongWidthIsKeptAndReported) {
    Parsed p("[_point]\nType=0x2f00\nDayXpm=\"2 1 1 1\"\n\"a c #FF0000\"\n\"aa\"\n"
             "NightXpm=\"2 1 1 1\"\n\"b c #00FF00\"\n\"bbb\"\n[end]\n");
    EXPECT_EQ(p.s.pt_nbmp[0], "$$$\r\n");
    EXPECT_EQ(p.s.loadmsg, "POI 0 x 02F00 Nightbmp width error . Please click on POI to edit.\r\n");
}

TEST(PointReader, RepairsOfMissingRowsAndWrongHeight) {
    Parsed missing("[_point]\nType=0x2f00\nDayXpm=\"3 2 1 1\"\n\"x c #FF0000\"\n[end]\n");
    EXPECT_EQ(missing.s.pt_bmp[0], "$$$\r\n$$$\r\n");
    EXPECT_EQ(missing.s.loadrep, "02F00 Fixed incorrect poi bmp.\r\n");

    Parsed tall("[_point]\nType=0x2f00\nDayXpm=\"2 16 1 1\"\n\"x c #FF0000\"\n\"xx\"\n\"xx\"\n[end]\n");
    EXPECT_EQ(tall.s.pt_xpm[0], "DayXpm=\"2 2 1 1\" Colormode=0");
    EXPECT_EQ(tall.s.loadrep, "02F00 Fixed incorrect poi xpm.\r\n");
}

TEST(PointReader, ColourLineBeyondTheHeadsCountIsStillAColour) {
    Parsed p("[_point]\nType=0x2f00\nDayXpm=\"2 1 1 1\"\n\"a c #FF0000\"\n\"b c #00FF00\"\n\"ab\"\n[end]\n");
    EXPECT_EQ(p.s.pt_col[0], "\"$ c #FF0000\"\r\n\"% c #00FF00\"\r\n");
    EXPECT_EQ(p.s.pt_bmp[0], "$%\r\n");
    EXPECT_EQ(p.s.pt_xpm[0], "DayXpm=\"2 1 2 1\" Colormode=0");
}

TEST(PointReader, RowSymbolWithoutColourAddsTransparentColourOnce) {
    Parsed p("[_point]\nType=0x2f00\nDayXpm=\"3 1 1 1\"\n\"x c #FF0000\"\n\"x.,\"\n[end]\n");
    EXPECT_EQ(p.s.loadrep, "02F00::old style point/colour? (.)\r\n");
    EXPECT_EQ(p.s.pt_col[0], "\"$ c #FF0000\"\r\n\"% c none\"\r\n");
    EXPECT_EQ(p.s.pt_bmp[0], "$%%\r\n");
    EXPECT_EQ(p.s.pt_xpm[0], "DayXpm=\"3 1 2 1\" Colormode=16");
}

// Every decoded point, printed as text and read back, gives the decoder's
// columns and the same record bytes.
TEST(PointReaderCorpus, DecodedPointsReadBackToTheSameColumnsAndBytes) {
    const std::string dir = corpus_dir();
    if (dir.empty()) GTEST_SKIP() << "no corpus";
    int compared = 0;
    for (const std::string& path : files_with(dir + "/typ", ".typ")) {
        platform::ScriptedPrompt ui;
        model::Store s;
        decode_bytes(s, ui, read_bytes(path));
        model::Store t = s;
        for (int32_t n = 0; n < s.pt_n + s.pt_nx; ++n) {
            const auto r = static_cast<size_t>(n);
            const bool extra = n >= s.pt_n;
            const std::string section = text::create_textfile(s, extra ? n - s.pt_n + 1 : n + 1, extra ? 4 : 2);
            // Pictures of no pixels are printed as one transparent pixel
            // for mkgmap, so they do not come back as they were.
            if (s.pt_bmp[r].empty()) continue;
            text::poiparse(t, ui, section, n, true);
            const std::string where = path + " point " + std::to_string(n) + "\n" + section;
            EXPECT_EQ(t.pt_typ[r], s.pt_typ[r]) << where;
            EXPECT_EQ(t.pt_lab[r], s.pt_lab[r]) << where;
            EXPECT_EQ(t.pt_cc[r], s.pt_cc[r]) << where;
            EXPECT_EQ(t.pt_xpm[r], s.pt_xpm[r]) << where;
            EXPECT_EQ(t.pt_col[r], s.pt_col[r]) << where;
            EXPECT_EQ(t.pt_bmp[r], s.pt_bmp[r]) << where;
            EXPECT_EQ(t.pt_nbmp[r], s.pt_nbmp[r]) << where;
            EXPECT_EQ(t.pt_ncol[r], s.pt_ncol[r]) << where;
            EXPECT_EQ(t.pt_nncol[r], s.pt_nncol[r]) << where;
            EXPECT_EQ(typ::encode_point_record(t, n), typ::encode_point_record(s, n)) << where;
            ++compared;
        }
    }
    EXPECT_GT(compared, 1000);
}

// The texts whose exact binaries stand beside them: every point read from the
// text has the pictures the binary holds.
TEST(PointReaderCorpus, TextPointsMatchTheirExactBinaries) {
    const std::string dir = corpus_dir();
    if (dir.empty()) GTEST_SKIP() << "no corpus";
    for (const char* name : {"suke-tmz", "suke-hike", "stac47-mapnik", "aio-basemap"}) {
        platform::ScriptedPrompt ui;
        model::Store bin;
        decode_bytes(bin, ui, read_bytes(dir + "/typ/" + name + ".typ"));
        std::map<std::string, int32_t> by_type;
        for (int32_t n = 0; n < bin.pt_n; ++n) by_type.emplace(bin.pt_typ[static_cast<size_t>(n)], n);

        const std::string text = read_bytes(dir + "/txt/" + name + ".txt");
        const std::string low = typ::lower(text);
        model::Store t = bin;
        int matched = 0;
        for (size_t at = low.find("[_point]"); at != std::string::npos;) {
            const size_t next = low.find("[_point]", at + 1);
            const std::string section = text.substr(at, next == std::string::npos ? std::string::npos : next - at);
            at = next;
            text::poiparse(t, ui, section, 0, true);
            const auto found = by_type.find(t.pt_typ[0]);
            ASSERT_NE(found, by_type.end()) << name << " " << t.pt_typ[0];
            const auto r = static_cast<size_t>(found->second);
            const std::string where = std::string(name) + " " + t.pt_typ[0] + "\n" + section;
            EXPECT_EQ(t.pt_xpm[0], bin.pt_xpm[r]) << where;
            EXPECT_EQ(t.pt_col[0], bin.pt_col[r]) << where;
            EXPECT_EQ(t.pt_bmp[0], bin.pt_bmp[r]) << where;
            EXPECT_EQ(t.pt_nbmp[0], bin.pt_nbmp[r]) << where;
            ++matched;
        }
        EXPECT_EQ(matched, bin.pt_n) << name;
    }
}

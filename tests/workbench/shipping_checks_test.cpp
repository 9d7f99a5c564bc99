// The checks a map maker runs before shipping a style: each limit at its
// boundary (at, one above), each fault found once, and nothing found in a
// style that is fine.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "model/store.h"
#include "platform/prompt.h"
#include "support/harness.h"
#include "text/load_driver.h"
#include "workbench/draworder_check.h"
#include "workbench/finding_format.h"
#include "workbench/label_codepage_check.h"
#include "workbench/pipeline_checks.h"
#include "workbench/point_limits_check.h"

namespace shipping_checks_test {

using namespace korvex;
using namespace korvex::workbench;

std::string head(int codepage = 1252) {
    return "[_id]\r\nProductCode=1\r\nFID=4711\r\nCodePage=" + std::to_string(codepage) + "\r\n[end]\r\n";
}

// Two-character symbols from letters and digits: enough for 300 colours.
std::string symbol(int i) {
    static const std::string a = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    return {a[static_cast<size_t>(i) / a.size()], a[static_cast<size_t>(i) % a.size()]};
}

// A point of w x h whose pixels use every colour in turn; `none` adds a
// transparent colour behind the opaque ones.
std::string point(const std::string& type, int w, int h, int opaque, bool none, const std::string& night = "") {
    const int n = opaque + (none ? 1 : 0);
    std::string t = "[_point]\r\nType=" + type + "\r\nString1=0x04,P\r\nDayXpm=\"" + std::to_string(w) + " " +
                    std::to_string(h) + " " + std::to_string(n) + " 2\" Colormode=" + (none ? "16" : "0") + "\r\n";
    for (int i = 0; i < opaque; ++i) {
        char c[8];
        std::snprintf(c, sizeof c, "%06X", (i * 40503) & 0xFFFFFF);
        t += "\"" + symbol(i) + " c #" + c + "\"\r\n";
    }
    if (none) t += "\"" + symbol(opaque) + " c none\"\r\n";
    for (int y = 0, k = 0; y < h; ++y) {
        t += "\"";
        for (int x = 0; x < w; ++x, ++k) t += symbol(k % n);
        t += "\"\r\n";
    }
    return t + night + "[end]\r\n";
}

model::Store load(const std::string& text, platform::ScriptedPrompt& ui) {
    model::Store s;
    model::newproject(s);
    EXPECT_TRUE(text::load_txt(s, ui, "test.txt", text, false, false));
    return s;
}

model::Store load(const std::string& text) {
    platform::ScriptedPrompt ui;
    return load(text, ui);
}

std::vector<std::string> checks_of(const Findings& f) {
    std::vector<std::string> out;
    for (const Finding& x : f) out.push_back(x.check);
    return out;
}

using Names = std::vector<std::string>;

struct ColourCase {
    const char* name;
    int opaque;
    bool none;
    Names expected;
};

// 255 colours of its own is the most a point holds; with a transparent one
// beside 255, that one takes the value older units cannot show.
TEST(PointLimits, ColourCountsAtTheirBoundaries) {
    const ColourCase cases[] = {
        {"255 opaque", 255, false, {}},
        {"256 opaque", 256, false, {k_check_colours_over_255}},
        {"254 and transparent", 254, true, {}},
        {"255 and transparent", 255, true, {k_check_old_units}},
        {"256 and transparent", 256, true, {k_check_colours_over_255, k_check_old_units}},
    };
    for (const ColourCase& c : cases) {
        const model::Store s = load(head() + point("0x2a00", 16, 16, c.opaque, c.none));
        ASSERT_EQ(s.pt_n, 1) << c.name;
        EXPECT_EQ(checks_of(chk_point_limits(s, 64)), c.expected) << c.name;
    }
}

TEST(PointLimits, MaxSizeAtAndOneAboveInEachDirection) {
    struct Case {
        int w, h, max;
        bool found;
    } cases[] = {{64, 64, 64, false}, {65, 64, 64, true}, {64, 65, 64, true},
                 {12, 12, 12, false}, {13, 12, 12, true}, {12, 13, 12, true}};
    for (const Case& c : cases) {
        const model::Store s = load(head() + point("0x2a00", c.w, c.h, 2, true));
        const Findings f = chk_point_limits(s, c.max);
        EXPECT_EQ(f.size(), c.found ? 1u : 0u) << c.w << " x " << c.h << " against " << c.max;
        if (c.found && !f.empty()) {
            EXPECT_EQ(f[0].check, k_check_over_max_size);
            EXPECT_NE(f[0].message.find(std::to_string(c.w) + " x " + std::to_string(c.h)), std::string::npos);
        }
    }
}

// A night picture is judged on its own colours, and said to be the night's.
TEST(PointLimits, NightPictureIsJudgedOnItsOwnAndNamed) {
    std::string night = "NightXpm=\"4 4 256 2\" Colormode=0\r\n";
    for (int i = 0; i < 256; ++i) night += "\"" + symbol(i) + " c #000000\"\r\n";
    for (int y = 0; y < 4; ++y) night += "\"" + symbol(y) + symbol(y) + symbol(y) + symbol(y) + "\"\r\n";
    const model::Store s = load(head() + point("0x2a00", 4, 4, 3, false, night));
    const Findings f = chk_point_limits(s, 64);
    ASSERT_EQ(f.size(), 1u);
    EXPECT_EQ(f[0].check, k_check_colours_over_255);
    EXPECT_EQ(f[0].message.rfind("night picture", 0), 0u) << f[0].message;
}

// A picture whose rows are colours, not symbols, has no palette; a picture
// with opacity (Colormode=32) has one and is not true colour.
TEST(PointLimits, TrueColourIsAPictureWithoutPaletteNotOneWithOpacity) {
    const std::string true_colour =
        "[_point]\r\nType=0x2b00\r\nString1=0x04,T\r\nDayXpm=\"2 2 0 0\"\r\n"
        "\"#FF0000 #00FF00\"\r\n\"#0000FF #FFFFFF\"\r\n[end]\r\n";
    const std::string opacity =
        "[_point]\r\nType=0x2c00\r\nString1=0x04,O\r\nDayXpm=\"2 2 2 1\" Colormode=32\r\n"
        "\"a c #FF0000\" alpha=0\r\n\"b c #00FF00\" alpha=8\r\n\"ab\"\r\n\"ba\"\r\n[end]\r\n";
    const model::Store s = load(head() + true_colour + opacity);
    ASSERT_EQ(s.pt_n, 2);
    const Findings f = chk_point_limits(s, 64);
    ASSERT_EQ(f.size(), 1u);
    EXPECT_EQ(f[0].check, k_check_true_colour);
    EXPECT_EQ(f[0].type, "0x02b00");
}

TEST(DraworderChecks, PolygonsWithoutLevelOnceAType) {
    const std::string text = head() + "[_drawOrder]\r\nType=0x01,1\r\nType=0x10f03,3\r\n[end]\r\n" +
                             "[_polygon]\r\nType=0x01\r\nXpm=\"0 0 1 0\"\r\n\"a c #FF0000\"\r\n[end]\r\n"
                             "[_polygon]\r\nType=0x10f03\r\nXpm=\"0 0 1 0\"\r\n\"a c #0000FF\"\r\n[end]\r\n"
                             "[_polygon]\r\nType=0x17\r\nXpm=\"0 0 1 0\"\r\n\"a c #0000FF\"\r\n[end]\r\n"
                             "[_polygon]\r\nType=0x17\r\nXpm=\"0 0 1 0\"\r\n\"a c #00FF00\"\r\n[end]\r\n"
                             "[_polygon]\r\nType=0x0501\r\nXpm=\"0 0 1 0\"\r\n\"a c #00FF00\"\r\n[end]\r\n";
    const model::Store s = load(text);
    ASSERT_EQ(s.pg_n, 5);
    const Findings none = chk_no_draworder(s);
    ASSERT_EQ(none.size(), 2u) << "one finding a type, not a row";
    EXPECT_EQ(none[0].type, "0x01700");
    EXPECT_EQ(none[0].check, k_check_no_draworder);
    // A type below 0x100 with a subtype has no place in a TYP's draw order.
    EXPECT_EQ(none[1].type, "0x00501");
    EXPECT_NE(none[1].message.find("cannot have a draw-order level"), std::string::npos) << none[1].message;
}

// A TYP keeps a type listed twice in drwlist; a text load drops the repeat,
// which the caller hands over. Either way the type is named once with every
// level, kept ones first.
TEST(DraworderChecks, TypesListedTwiceInTheListOrDroppedByTheLoad) {
    model::Store s;
    model::newproject(s);
    s.drwlist = " 0001,1 0005,2 10F03,3 0005,4 0017,5";
    Findings f = chk_draworder_duplicates(s);
    ASSERT_EQ(f.size(), 1u);
    EXPECT_EQ(f[0].type, "0x00500");
    EXPECT_EQ(f[0].check, k_check_draworder_duplicate);
    EXPECT_NE(f[0].message.find("2 draw-order entries (levels 2, 4)"), std::string::npos) << f[0].message;

    s.drwlist = " 0001,1 0005,2 10F03,3";
    f = chk_draworder_duplicates(s, "10F03,3 0005,6 0005,7");
    ASSERT_EQ(f.size(), 2u);
    EXPECT_EQ(f[0].type, "0x00500");
    EXPECT_NE(f[0].message.find("3 draw-order entries (levels 2, 6, 7)"), std::string::npos) << f[0].message;
    EXPECT_EQ(f[1].type, "0x10f03");
    EXPECT_NE(f[1].message.find("levels 3, 3"), std::string::npos) << f[1].message;
    EXPECT_TRUE(chk_draworder_duplicates(s).empty());
}

// A label in a UTF-8 text becomes bytes of its language's page; what the
// file's page has no place for is found, with the string and the language.
TEST(LabelCodepage, CharactersTheFilePageLacksAreFoundWithStringAndLanguage) {
    const std::string bom = "\xEF\xBB\xBF";
    auto poly = [](const std::string& type, const std::string& strings) {
        return "[_polygon]\r\nType=" + type + "\r\n" + strings + "Xpm=\"0 0 1 0\"\r\n\"a c #FF0000\"\r\n[end]\r\n";
    };
    const std::string text = bom + head() + "[_drawOrder]\r\nType=0x01,1\r\nType=0x02,1\r\nType=0x03,1\r\n[end]\r\n" +
                             poly("0x01", "String1=0x04,Caf\xC3\xA9\r\nString2=0x15,Ogr\xC3\xB3\x64\r\n") +
                             poly("0x02", "String1=0x15,Ziele\xC5\x84\r\n") + poly("0x03", "String1=0x04,Plain\r\n");
    platform::ScriptedPrompt ui;
    const model::Store s = load(text, ui);
    ASSERT_EQ(s.pg_n, 3);
    const Findings f = chk_label_codepage(s);
    ASSERT_EQ(f.size(), 1u) << "é of English and ó of Polish are in 1252; ń is not";
    EXPECT_EQ(f[0].type, "0x00200");
    EXPECT_EQ(f[0].check, k_check_label_codepage);
    EXPECT_NE(f[0].message.find("\"Ziele\xC5\x84\""), std::string::npos) << f[0].message;
    EXPECT_NE(f[0].message.find("language 0x15"), std::string::npos) << f[0].message;
}

TEST(LabelCodepage, UndefinedBytesAndBrokenUtf8AreFound) {
    const std::string section = "[_point]\r\nType=0x2a00\r\nString1=0x04,LABEL\r\nDayXpm=\"1 1 1 1\"\r\n\"a c #FF0000\"\r\n\"a\"\r\n[end]\r\n";
    struct Case {
        int codepage;
        std::string label;
        bool found;
    } cases[] = {
        {1252, "Caf\xE9", false},        // é in 1252
        {1252, "A\x81", true},           // 1252 leaves 0x81 undefined
        {65001, "Caf\xC3\xA9", false},   // UTF-8 é
        {65001, "Caf\xE9", true},        // a lone byte is not UTF-8
        {65001, "Caf\xC3", true},        // cut short at the end
    };
    for (const Case& c : cases) {
        model::Store s = load(head(c.codepage) + section);
        ASSERT_EQ(s.pt_n, 1);
        std::string& txt = s.pt_txt[0];
        txt.replace(txt.find("LABEL"), 5, c.label);
        const Findings f = chk_label_codepage(s);
        EXPECT_EQ(f.size(), c.found ? 1u : 0u) << c.codepage << " " << c.label;
        for (const Finding& x : f) EXPECT_EQ(findings_json({x}).find('\x81'), std::string::npos);
    }
}

// The findings of a pipeline come out in one order whatever order the checks
// ran in, and one fact is said once.
TEST(PipelineFindings, SortedByClassTypeCheckAndMessageWithoutRepeats) {
    Findings f = {{2, "0x02b00", "b", "x"}, {0, "0x00500", "z", "x"}, {2, "0x02a00", "b", "x"},
                  {2, "0x02b00", "a", "y"}, {0, "0x00500", "z", "x"}, {-1, "", "file", "m"}};
    sort_findings(f);
    std::vector<std::string> order;
    for (const Finding& x : f) order.push_back(std::to_string(x.cls) + x.type + x.check);
    EXPECT_EQ(order, (std::vector<std::string>{"-1file", "00x00500z", "20x02a00b", "20x02b00a", "20x02b00b"}));
}

TEST(PipelineFindings, JsonEscapesWhatAStringMayHold) {
    const std::string json = findings_json({{1, "0x00100", "c", "a \"quote\", a \\ and\ta tab\x01"}});
    EXPECT_NE(json.find(R"("message": "a \"quote\", a \\ and\ta tab\u0001")"), std::string::npos) << json;
    EXPECT_NE(json.find(R"("class": "line")"), std::string::npos);
    EXPECT_EQ(findings_json({}), "{\"count\": 0, \"findings\": []}\n");
}

}  // namespace shipping_checks_test

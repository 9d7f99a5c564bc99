#include "text/panel_apply.h"

#include <gtest/gtest.h>

#include "support/harness.h"
#include "text/colour_check.h"
#include "text/load_driver.h"
#include "typ/type_range.h"

namespace korvex::text {
namespace {

using korvex::testing::crlf;
using platform::ScriptedPrompt;
using Messages = std::vector<std::string>;

const std::string k_red_polygon = "[_polygon]\nType=0x01\nString1=0x04,One\nXpm=\"0 0 1 0\"\n\"0 c #FF0000\"\n[end]\n";
const std::string k_line = "[_line]\nType=0x02\nLineWidth=2\nBorderWidth=1\nXpm=\"0 0 2 0\"\n\"0 c #00FF00\"\n"
                           "\"1 c #000000\"\n[end]\n";
const std::string k_point = "[_point]\nType=0x2f01\nDayXpm=\"2 1 2 1\" Colormode=0\n\"a c #FF0000\"\n\"b c #00FF00\"\n"
                            "\"ab\"\nNightXpm=\"2 1 1 1\" Colormode=0\n\"c c #0000FF\"\n\"cc\"\n[end]\n";

// Two polygons (0x01, 0x02), a solid line 0x02, a point 0x2f01 with a night
// picture and an extra point.
Store project() {
    Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    std::string second = k_red_polygon;
    second.replace(second.find("0x01"), 4, "0x02");
    load_txt(s, ui, "a.txt",
             crlf("[_id]\nFID=1\n[end]\n[_drawOrder]\nType=0x01,1\nType=0x02,2\n[end]\n" + k_red_polygon + second +
                  k_line + k_point + "[_point]\nID=0x11b01\nXpm=\"0 0 0 0\"\n[end]\n"),
             false, true);
    return s;
}

// Every column of every class, the counters and the report.
std::string snapshot(const Store& s) {
    std::string out;
    auto add = [&](const auto& column) {
        for (const auto& v : column) {
            if constexpr (std::is_same_v<std::decay_t<decltype(v)>, std::string>) out += v;
            else out += std::to_string(v);
            out += '|';
        }
        out += '\n';
    };
    add(s.pg_typ), add(s.pg_bmp), add(s.pg_col), add(s.pg_txt), add(s.pg_drw), add(s.pg_lab), add(s.pg_dayc);
    add(s.pg_xpm), add(s.pg_ncol), add(s.pg_mode);
    add(s.ln_bmp), add(s.ln_col), add(s.ln_txt), add(s.ln_lab), add(s.ln_dayc), add(s.ln_act), add(s.ln_xpm);
    add(s.ln_code), add(s.ln_ncol), add(s.ln_wid), add(s.ln_bord), add(s.ln_mode);
    add(s.pt_col), add(s.pt_bmp), add(s.pt_nbmp), add(s.pt_txt), add(s.pt_typ), add(s.pt_lab), add(s.pt_cc);
    add(s.pt_xpm), add(s.pt_ncol), add(s.pt_nncol), add(s.pt_mode);
    add(std::vector<int64_t>{s.pg_n, s.ln_n, s.ln_nact, s.pt_n, s.pt_nx, s.pg_nnight, s.pt_nnight, s.dirty, s.hdr_len});
    return out + s.drwlist + s.loadrep;
}

struct Outcome {
    PanelApply result;
    Messages boxes;
    std::string selected;
};

Outcome apply(Store& s, const std::string& panel, int cls, int32_t row, bool night = false) {
    ScriptedPrompt ui;
    Outcome o{parsetext(s, ui, crlf(panel), cls, row, night), ui.messages, ""};
    if (o.result.line >= 0) o.selected = o.result.text.substr(o.result.select_from, o.result.select_length);
    return o;
}

// The panel of the first polygon with one line replaced.
std::string polygon_with(const std::string& from, const std::string& to) {
    std::string t = k_red_polygon;
    t.replace(t.find(from), from.size(), to);
    return t;
}

TEST(ColourCheck, ShortValuesPaddedAlphaCutHexOnly) {
    const std::pair<std::string, std::string> fine[] = {
        {"\"a c #FF0000\"", "\"a c #FF0000\""},
        {"\"a c #fff\"", "\"a c #000FFF\""},
        {"\"$ c #ff0000\" alpha=7", "\"$ c #ff0000\" alpha=7"},
        {"\"$ c #FF0000\" canalalpha=7", "\"$ c #FF0000\" canalalpha=7"},
        {"\"$ c #12\" alpha=3", "\"$ c #000012\" alpha=3"},
        {"\"a c #FF0000\",", "\"a c #FF0000\","},
        {"\"a c none\"", "\"a c none\""},
        {"DaycustomColor:#ab", "DaycustomColor:#0000AB"},
    };
    for (const auto& [in, out] : fine) {
        const ColourCheck c = colour_check(in);
        EXPECT_TRUE(c.valid) << in;
        EXPECT_EQ(c.line, out);
    }
    EXPECT_FALSE(colour_check("\"a c #12345g\"").valid);
    EXPECT_FALSE(colour_check("NightcustomColor:#red").valid);
}

TEST(TypeRange, EachClassItsRangesAndSubtypesUpTo1F) {
    const Messages polygon{"Select range: 1 - 7F or 100 - 17F", "Invalid type."};
    const Messages line{"Select range: 1 - 2F or 100 - 14F", "Invalid type."};
    const Messages point{"Select range: 1 - 1FF ", "Invalid type."};
    EXPECT_EQ(typ::chktype("0x2b00", 0), Messages{});
    EXPECT_EQ(typ::chktype("0x10f03", 0), Messages{});
    EXPECT_EQ(typ::chktype("0x80", 0), polygon);
    EXPECT_EQ(typ::chktype("0x18000", 0), polygon);
    EXPECT_EQ(typ::chktype("0x2b20", 0), Messages{"SubTypes must be between 0 and 1F."});
    EXPECT_EQ(typ::chktype("0x0", 1), line);
    EXPECT_EQ(typ::chktype("0x3000", 1), line);
    EXPECT_EQ(typ::chktype("0x14f1f", 3), Messages{});
    EXPECT_EQ(typ::chktype("0x1ff", 2), Messages{});
    EXPECT_EQ(typ::chktype("0x20000", 2), point);
    EXPECT_EQ(typ::chktype("0x11b01", 4), Messages{});
}

TEST(PanelApply, TypeRules) {
    Store s = project();
    Outcome o = apply(s, polygon_with("Type=0x01", "String2=0x04,x"), 0, 0);
    EXPECT_EQ(o.boxes, Messages{"No TYPE"});
    // Every type the panel cannot take is one box, its words also in the status line.
    const struct {
        const char* type;
        Messages boxes;
        const char* caption;
    } refused[] = {
        {"0x0000", {" Wrong Type number"}, " Wrong Type number"},
        {"0x123456", {"Too long "}, "Too long "},
        {"0x7777777", {"Too long "}, "Too long "},
        {"0x80", {"Select range: 1 - 7F or 100 - 17F\r\nInvalid type."}, "Select range: 1 - 7F or 100 - 17F Invalid type."},
        {"0x0105\nSubType=0x20", {"SubTypes must be between 0 and 1F.\r\nInvalid type."},
         "SubTypes must be between 0 and 1F. Invalid type."},
        {"0x02", {"Type exists."}, "Type exists."},
    };
    const std::string before = s.pg_typ[0];
    for (const auto& r : refused) {
        o = apply(s, polygon_with("Type=0x01", std::string("Type=") + r.type), 0, 0);
        EXPECT_FALSE(o.result.ok) << r.type;
        EXPECT_EQ(o.boxes, r.boxes) << r.type;
        EXPECT_EQ(o.result.caption, r.caption) << r.type;
        EXPECT_EQ(o.selected.substr(0, 5), "Type=") << r.type;
        EXPECT_EQ(s.pg_typ[0], before) << r.type;
    }

    // Two digits are the type without subtype: the element's own type.
    o = apply(s, polygon_with("Type=0x01", "type = 0x1"), 0, 0);
    EXPECT_TRUE(o.result.ok);
    EXPECT_FALSE(o.result.changed_type);
    o = apply(s, polygon_with("Type=0x01", "Type=0x05\nSubType=0x3"), 0, 0);
    EXPECT_TRUE(o.result.ok);
    EXPECT_TRUE(o.result.changed_type);
    EXPECT_EQ(s.pg_typ[0], "0x0503");

    // An extra point is numbered by ID=, which stands for the type key.
    ASSERT_EQ(s.pt_nx, 1);
    EXPECT_TRUE(apply(s, "[_point]\nID=0x11b02\nXpm=\"0 0 0 0\"\n[end]\n", 4, 1).result.ok);
    EXPECT_EQ(s.pt_typ[1], "11B02");
}

TEST(PanelApply, XpmAndColourCountRules) {
    Store s = project();
    Outcome o = apply(s, "[_polygon]\nType=0x01\n\"0 c #FF0000\"\n[end]\n", 0, 0);
    EXPECT_EQ(o.boxes, Messages{"No XPM"});
    EXPECT_EQ(apply(s, polygon_with("0 0 1 0", "0 0 1"), 0, 0).result.caption, "XPM error");
    EXPECT_EQ(apply(s, polygon_with("\"0 c #FF0000\"\n", ""), 0, 0).result.caption, "Wrong number of pixels");
    EXPECT_EQ(apply(s, "[_polygon]\nType=0x01\nXpm=\"32 32 1 0\"\n\" c #FF0000\"\n[end]\n", 0, 0).result.caption,
              "Wrong number of pixels");
    EXPECT_EQ(apply(s, polygon_with("0 0 1 0", "0 0 1 3"), 0, 0).result.caption, "Pixel Length =1 XPM says 3");

    o = apply(s, polygon_with("#FF0000", "#FF00G0"), 0, 0);
    EXPECT_EQ(o.result.caption, "Incorrect hex or syntax.");
    EXPECT_EQ(o.selected, "\"0 c #FF00G0\"");
    o = apply(s, polygon_with("#FF0000", "red"), 0, 0);
    EXPECT_EQ(o.boxes, Messages{" Colour? "});

    o = apply(s, polygon_with("\"0 c #FF0000\"", "\"0 c #FF0000\"\n\"1 c #00FF00\""), 0, 0);
    EXPECT_EQ(o.result.caption, "Colours =2 XPM says:1");
    EXPECT_EQ(o.boxes, Messages{" Colour? "});
    EXPECT_EQ(o.selected, "Xpm=\"0 0 1 0\"");
    o = apply(s, "[_polygon]\nType=0x01\nXpm=\"0 0 3 0\"\n\"0 c #FF0000\"\n\"1 c #00FF00\"\n\"2 c #00FF00\"\n[end]\n", 0, 0);
    EXPECT_EQ(o.result.caption, "Can't have3 colours.");

    // A short value is padded in the panel text, which is what the element is read from.
    o = apply(s, polygon_with("#FF0000", "#f0"), 0, 0);
    EXPECT_TRUE(o.result.ok);
    EXPECT_NE(o.result.text.find("\"0 c #0000F0\"\r\n"), std::string::npos);
    EXPECT_EQ(s.pg_col[0], "\"0 c #0000F0\"");
}

TEST(PanelApply, RowRules) {
    Store s = project();
    auto point_with = [](const std::string& from, const std::string& to) {
        std::string t = k_point;
        t.replace(t.find(from), from.size(), to);
        return t;
    };
    Outcome o = apply(s, point_with("\"ab\"", "\"abb\""), 2, 0);
    EXPECT_EQ(o.result.caption, "BMP width =3 XPM says:2");
    o = apply(s, point_with("\"ab\"", "\"ab\"\n\"a\""), 2, 0);
    EXPECT_EQ(o.result.caption, "BMP height =2 XPM says:1");
    o = apply(s, point_with("\"ab\"", "\"ab\"\n\"a\"").replace(k_point.find("2 1 2 1"), 7, "2 2 2 1"), 2, 0);
    EXPECT_EQ(o.result.caption, "BMP length not the same:");
    EXPECT_EQ(o.selected, "\"a\"");
    o = apply(s, point_with("\"ab\"", "\"ax\""), 2, 0);
    EXPECT_EQ(o.result.caption, " Unknown Character in BMP:x");

    // Each picture of a point is checked on its own.
    o = apply(s, point_with("\"cc\"", "\"cy\""), 2, 0, false);
    EXPECT_TRUE(o.result.ok) << o.result.caption;
    o = apply(s, point_with("\"cc\"", "\"cy\""), 2, 0, true);
    EXPECT_EQ(o.result.caption, " Unknown Character in BMP:y");

    // Two characters a pixel from cpp_limit colours on.
    std::string big = "[_point]\nType=0x2f01\nDayXpm=\"2 1 32 2\"\n";
    for (int k = 0; k < model::cpp_limit; ++k) big += "\"" + std::string{char('A' + k / 16), char('a' + k % 16)} + " c #000000\"\n";
    o = apply(s, big + "\"AaZz\"\n[end]\n", 2, 0);
    EXPECT_EQ(o.result.caption, "Colour Zz not found");
    big.replace(big.find("32 2"), 4, "32 1");
    EXPECT_EQ(apply(s, big + "\"AaAa\"\n[end]\n", 2, 0).result.caption, "Pixel Length =2 XPM says 1");
}

TEST(PanelApply, StringAndFontStyleRules) {
    Store s = project();
    EXPECT_EQ(apply(s, polygon_with("String1=0x04,One", "Font=Small"), 0, 0).boxes, Messages{"No FontStyle"});
    // A label that speaks of a font is no key.
    EXPECT_TRUE(apply(s, polygon_with("One", "Font"), 0, 0).result.ok);
    EXPECT_EQ(apply(s, polygon_with("String1=0x04,One", "FontStyle=Huge"), 0, 0).result.caption, "unknown fontstyle");
    for (const char* style : {"NoLabel (invisible)", "NormalFont", "LargeFont", "smallfont", "Default"}) {
        Outcome o = apply(s, polygon_with("String1=0x04,One", std::string("fontstyle=") + style), 0, 0);
        EXPECT_TRUE(o.result.ok) << style;
        EXPECT_NE(s.pg_txt[0].find("FontStyle="), std::string::npos) << style;
    }

    Outcome o = apply(s, polygon_with("String1=0x04,One", "String1 0x04 One"), 0, 0);
    EXPECT_EQ(o.boxes, Messages{"String1 0x04 One?"});
    EXPECT_FALSE(o.result.ok);
    o = apply(s, polygon_with("String1=0x04,One", "String=Two"), 0, 0);
    EXPECT_TRUE(o.result.ok);
    EXPECT_EQ(o.result.caption, "String syntax - error ignored.");
    EXPECT_EQ(o.selected, "String=Two");
    // A language and a comma do not make up for the missing string number.
    o = apply(s, polygon_with("String1=0x04,One", "String=0x04,Two"), 0, 0);
    EXPECT_EQ(o.result.caption, "String syntax - error ignored.");

    EXPECT_EQ(apply(s, polygon_with("String1=0x04,One", "DaycustomColor:#GG0000"), 0, 0).result.caption, "Hex?");
    o = apply(s, polygon_with("String1=0x04,One", "CustomColor=Day\nDaycustomColor:#ff"), 0, 0);
    EXPECT_TRUE(o.result.ok);
    EXPECT_EQ(s.pg_dayc[0], "FF0000");
}

TEST(PanelApply, QuoteRule) {
    Store s = project();
    Outcome o = apply(s, polygon_with("String1=0x04,One", "String1=0x04,Joe's \"Bar"), 0, 0);
    EXPECT_EQ(o.boxes, Messages{"missing '' \r\n\r\nString1=0x04,Joe's \"Bar"});
    EXPECT_EQ(o.result.line, 2);
    EXPECT_EQ(o.selected, "String1=0x04,Joe's \"Bar");
    EXPECT_EQ(apply(s, polygon_with("\"0 c #FF0000\"", "\"0 c #FF0000"), 0, 0).boxes.size(), 1u);
}

TEST(PanelApply, LinesNeedAWidthUnlessTheyHaveABitmap) {
    Store s = project();
    std::string line = k_line;
    Outcome o = apply(s, line.replace(line.find("LineWidth=2\n"), 12, ""), 1, 0);
    EXPECT_EQ(o.result.caption, "Error:lwidth(");
    EXPECT_FALSE(o.result.ok);
    line = k_line;
    o = apply(s, line.replace(line.find("LineWidth=2\nBorderWidth=1"), 25, "lwidth(=3"), 1, 0);
    EXPECT_TRUE(o.result.ok);
    EXPECT_EQ(o.result.caption, "No Borderwidth . Will continue");
    EXPECT_EQ(s.ln_wid[0], 3);
    o = apply(s, "[_line]\nType=0x02\nXpm=\"32 1 2 1\"\n\"a c #00FF00\"\n\"b c none\"\n"
                 "\"aaaabbbbaaaabbbbaaaabbbbaaaabbbb\"\n[end]\n",
              1, 0);
    EXPECT_TRUE(o.result.ok) << o.result.caption;
    EXPECT_EQ(s.ln_mode[0] >> 3, 1);
    EXPECT_EQ(s.ln_wid[0], 0);
}

TEST(PanelApply, SuccessReadsOnlyThatElementAgain) {
    Store s = project();
    const Store before = s;
    std::string text = polygon_with("#FF0000", "#0000FF").replace(0, 10, "[_polygon]\nextendedlabels=y");
    text.replace(text.find("0x01"), 4, "0x04");  // a type no other polygon has
    Outcome o = apply(s, text, 0, 1);
    ASSERT_TRUE(o.result.ok) << o.result.caption;
    EXPECT_TRUE(s.dirty);
    EXPECT_EQ(s.pg_col[1], "\"0 c #0000FF\"");
    EXPECT_NE(s.pg_txt[1].find("ExtendedLabels=Y"), std::string::npos);
    EXPECT_EQ(s.pg_typ[1], "0x0400");
    EXPECT_TRUE(o.result.changed_type);
    // The other rows, and the draw order the panel does not carry, stay.
    EXPECT_EQ(s.pg_col[0], before.pg_col[0]);
    EXPECT_EQ(s.pg_txt[0], before.pg_txt[0]);
    EXPECT_EQ(s.drwlist, before.drwlist);
    EXPECT_EQ(s.pg_drw, before.pg_drw);
    EXPECT_EQ(s.ln_txt, before.ln_txt);
    EXPECT_EQ(s.pt_txt, before.pt_txt);

    std::string point = k_point;
    ASSERT_TRUE(apply(s, point.replace(point.find("#0000FF"), 7, "#FFFFFF"), 2, 0, true).result.ok);
    EXPECT_NE(s.pt_col[0].find("#FFFFFF"), std::string::npos);
    EXPECT_EQ(s.pt_nnight, before.pt_nnight);
}

TEST(PanelApply, RefusalsLeaveTheStoreAsItWas) {
    Store s = project();
    const std::string before = snapshot(s);
    const std::string refused[] = {
        polygon_with("#FF0000", "#FF00G0"),
        polygon_with("0x01", "0x80"),
        polygon_with("String1=0x04,One", "FontStyle=Huge"),
        polygon_with("0 0 1 0", "0 0 2 0"),
        polygon_with("\"0 c #FF0000\"", "\"0 c #fff\"\n\"1 c #GG0000\""),
    };
    for (const std::string& panel : refused) {
        EXPECT_FALSE(apply(s, panel, 0, 0).result.ok) << panel;
        EXPECT_EQ(snapshot(s), before) << panel;
    }
    std::string line = k_line;
    EXPECT_FALSE(apply(s, line.replace(line.find("LineWidth=2\n"), 12, ""), 1, 0).result.ok);
    EXPECT_FALSE(apply(s, k_red_polygon, 0, 7).result.ok);
    EXPECT_EQ(snapshot(s), before);
    EXPECT_TRUE(apply(s, polygon_with("#FF0000", "#00FF00"), 0, 0).result.ok);
    EXPECT_NE(snapshot(s), before);
}

}  // namespace
}  // namespace korvex::text

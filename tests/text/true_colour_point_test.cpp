// Points whose pictures are written as "#RRGGBB" a pixel, as mkgmap reads
// them: every pixel survives text -> text and text -> TYP -> text.
#include <gtest/gtest.h>

#include "support/harness.h"
#include "text/load_driver.h"

using namespace korvex;
using namespace korvex::testing;

namespace {

const std::string k_id_section = "[_id]\r\nProductCode=1\r\nFID=7\r\nCodePage=1252\r\n[end]\r\n";

std::string point_section(const std::string& text) {
    const size_t at = text.find("[_point]");
    return at == std::string::npos ? std::string() : text.substr(at, text.find("[end]", at) + 5 - at);
}

// The text the tables print after loading text.
std::string reprint(const std::string& text) {
    model::Store s;
    model::newproject(s);
    platform::ScriptedPrompt ui;
    text::load_txt(s, ui, "x.txt", text, false, false);
    return text_of(s, ui);
}

std::string through_typ(const std::string& text) {
    model::Store s;
    model::newproject(s);
    platform::ScriptedPrompt ui;
    text::load_txt(s, ui, "x.txt", text, false, false);
    const std::string typ = encode(s, ui);
    model::Store back;
    model::newproject(back);
    decode_bytes(back, ui, typ);
    return text_of(back, ui);
}

TEST(TrueColourPoint, DayPixelsSurviveTextAndTypInEveryShape) {
    const std::string rows =
        "\"#FF0000#00FF00#0000FF#FFFFFF\"\r\n"
        "\"#000000#112233#445566#778899\"\r\n"
        "\"#AABBCC#DDEEFF#123456#654321\"\r\n";
    const std::string expected = "[_point]\r\nType=0x02f00\r\nDayXpm=\"4 3 0 0\" Colormode=0\r\n" + rows +
                                 ";12345678901234567890123456789012\r\n[end]";
    // Odd width and height, lower-case digits, the head as mkgmap writes it.
    for (const char* head : {"DayXpm=\"4 3 0 0\"", "Xpm=\"4 3 0 0\"", "DayXpm=\"4 3 0 1\""}) {
        std::string lowered = rows;
        for (char& c : lowered) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        const std::string text = k_id_section + "[_point]\r\nType=0x2f\r\n" + head + "\r\n" + lowered + "[end]\r\n";
        SCOPED_TRACE(head);
        const std::string once = reprint(text);
        EXPECT_EQ(point_section(once), expected);
        EXPECT_EQ(point_section(reprint(once)), expected);
        std::string typ_text = point_section(through_typ(text));
        const size_t labels = typ_text.find("ExtendedLabels=N\r\n");  // what a record states
        if (labels != std::string::npos) typ_text.erase(labels, 18);
        EXPECT_EQ(typ_text, expected);
    }
}

// A night picture cannot be stored without a palette: it gets one, with
// every pixel's colour. Opacity of a day picture stays in the old-style form
// the reader takes back.
TEST(TrueColourPoint, NightPicturesGetAPaletteAndOpacityStays) {
    const std::string text = k_id_section +
                             "[_point]\r\nType=0x2f01\r\nDayXpm=\"3 1 0 0\"\r\n\"#FF0000#00FF00#FF0000\"\r\n"
                             "NightXpm=\"3 1 0 0\"\r\n\"#110000#001100#000011\"\r\n[end]\r\n"
                             "[_point]\r\nType=0x30\r\nDayXpm=\"2 1 0 0\"\r\n\"#FF00000A#00FF00\"\r\n[end]\r\n";
    const std::string once = reprint(text);
    EXPECT_NE(once.find("DayXpm=\"3 1 0 0\" Colormode=0\r\n\"#FF0000#00FF00#FF0000\"\r\n"
                        ";12345678901234567890123456789012\r\n"
                        "NightXpm=\"3 1 3 1\" Colormode=0\r\n\"$ c #110000\"\r\n\"% c #001100\"\r\n\"& c #000011\"\r\n"
                        "\"$%&\"\r\n[end]"),
              std::string::npos)
        << once;
    EXPECT_NE(once.find("DayXpm=\"2 1 0 0\" Colormode=32\r\n\"#FF00000A#00FF00\"\r\n"), std::string::npos) << once;
    EXPECT_EQ(reprint(once), once);
    const std::string typ_text = through_typ(text);
    EXPECT_NE(typ_text.find("NightXpm=\"3 1 3 1\" Colormode=0\r\n\"$ c #110000\"\r\n\"% c #001100\"\r\n\"& c #000011\"\r\n\"$%&\"\r\n"),
              std::string::npos)
        << typ_text;
}

}  // namespace

// The bundled sample is drawn by hand as text; "make samples" builds its TYP
// from that text. The two must stay in step, and the sample must keep what
// the suites that read it (round trips, hostile input, mkgmap, the windows)
// count on finding in it.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "support/harness.h"
#include "text/load_driver.h"
#include "text/panel_apply.h"
#include "typ/header.h"

using namespace korvex;
using namespace korvex::testing;

namespace {

const std::string k_text = source_dir() + "/data/samples/sample.txt";
const std::string k_typ = source_dir() + "/data/samples/sample.typ";

// The date of the header is the only thing that depends on when it was built.
std::string without_date(std::string typ) {
    for (int at = typ::hdr::year; at <= typ::hdr::second && static_cast<size_t>(at) < typ.size(); ++at)
        typ[static_cast<size_t>(at)] = '\0';
    return typ;
}

TEST(BundledSample, TheTextLoadsWithoutAWordAndTheTypIsWhatItEncodesTo) {
    platform::ScriptedPrompt ui;
    model::Store s;
    model::newproject(s);
    ASSERT_TRUE(text::load_txt(s, ui, k_text, read_bytes(k_text), false, true));
    EXPECT_EQ(s.loadrep, "");
    EXPECT_TRUE(ui.messages.empty()) << ui.messages.front();
    EXPECT_TRUE(ui.questions.empty()) << ui.questions.front();
    const std::string built = encode(s, ui);
    ASSERT_FALSE(built.empty());
    const std::string committed = read_bytes(k_typ);
    if (without_date(built) != without_date(committed)) {
        model::Store a, b;
        decode_bytes(a, ui, built);
        decode_bytes(b, ui, committed);
        ADD_FAILURE() << "data/samples/sample.typ is not what sample.txt encodes to; run make samples\n"
                      << first_difference(text_of(a, ui), text_of(b, ui));
    }
}

// Each hand-drawn section passes the check of an edit in the code panel:
// pictures as wide and high as their heads say, colours as many, symbols known.
TEST(BundledSample, EverySectionPassesThePanelCheck) {
    platform::ScriptedPrompt ui;
    model::Store s;
    model::newproject(s);
    const std::string text = read_bytes(k_text);
    ASSERT_TRUE(text::load_txt(s, ui, k_text, text, false, true));
    std::vector<std::string> sections;
    for (size_t at = text.find("\r\n[_"); at != std::string::npos; at = text.find("\r\n[_", at + 2)) {
        const size_t end = text.find("[end]", at);
        const std::string section = text.substr(at + 2, end + 5 - at - 2);
        if (section.rfind("[_id]", 0) != 0 && section.rfind("[_drawOrder]", 0) != 0) sections.push_back(section);
    }
    ASSERT_EQ(sections.size(), static_cast<size_t>(s.pg_n + s.ln_n + s.ln_nact + s.pt_n + s.pt_nx));
    size_t k = 0;
    auto check = [&](int cls, int32_t row, int32_t count) {
        for (int32_t n = 0; n < count; ++n, ++k) {
            const bool night = cls >= model::k_points && sections[k].find("NightXpm") != std::string::npos;
            for (bool part : {false, night}) {
                const text::PanelApply r = text::parsetext(s, ui, sections[k], cls, row + n, part);
                EXPECT_TRUE(r.ok) << r.caption << "\n" << sections[k];
                if (!part) break;
            }
        }
    };
    check(model::k_polygons, 0, s.pg_n);
    check(model::k_lines, 0, s.ln_n);
    check(model::k_points, 0, s.pt_n);
    check(model::k_active_lines, s.ln_n, s.ln_nact);
    check(model::k_extra_points, s.pt_n, s.pt_nx);
    EXPECT_TRUE(ui.messages.empty()) << ui.messages.front();
}

TEST(BundledSample, HasEverySchemeColourModeAndKindOfElement) {
    platform::ScriptedPrompt ui;
    model::Store s;
    decode_bytes(s, ui, read_bytes(k_typ));
    EXPECT_EQ(s.loadrep, "");

    std::set<int> polygon_schemes, solid_lines, bitmap_lines, point_modes;
    for (int32_t k = 0; k < s.pg_n; ++k) polygon_schemes.insert(s.pg_mode[static_cast<size_t>(k)]);
    EXPECT_EQ(polygon_schemes, (std::set<int>{6, 7, 8, 9, 11, 13, 14, 15}));
    for (int32_t k = 0; k < s.ln_n; ++k) {
        const int mode = s.ln_mode[static_cast<size_t>(k)];
        (mode < 8 ? solid_lines : bitmap_lines).insert(mode & 7);
    }
    EXPECT_EQ(solid_lines, (std::set<int>{0, 1, 6, 7}));
    EXPECT_EQ(bitmap_lines, (std::set<int>{0, 1, 6, 7}));

    int nights = 0, two_character = 0;
    for (int32_t k = 0; k < s.pt_n; ++k) {
        const auto r = static_cast<size_t>(k);
        point_modes.insert(s.pt_mode[r]);
        nights += !s.pt_nbmp[r].empty();
        two_character += s.pt_ncol[r] >= model::cpp_limit;
    }
    EXPECT_EQ(point_modes, (std::set<int>{0, 1, 2}));
    EXPECT_GE(nights, 2);
    EXPECT_EQ(two_character, 1);

    // An extended type in each class, one active line, one extra point.
    EXPECT_NE(std::find(s.pg_typ.begin(), s.pg_typ.begin() + s.pg_n, "0x10F03"), s.pg_typ.begin() + s.pg_n);
    EXPECT_NE(std::find(s.ln_code.begin(), s.ln_code.begin() + s.ln_n, 0x1010b), s.ln_code.begin() + s.ln_n);
    EXPECT_NE(std::find(s.pt_typ.begin(), s.pt_typ.begin() + s.pt_n, "11501"), s.pt_typ.begin() + s.pt_n);
    EXPECT_EQ(s.ln_nact, 1);
    EXPECT_EQ(s.pt_nx, 1);

    // Every element is named in English and German, some with letters of the page.
    int accented = 0;
    auto named = [&](const std::string& txt) {
        EXPECT_NE(txt.find("String1=0x04,"), std::string::npos) << txt;
        EXPECT_NE(txt.find("String2=0x02,"), std::string::npos) << txt;
        accented += txt.find_first_of("\xE4\xF6\xFC\xDF\xE9") != std::string::npos;
    };
    for (int32_t k = 0; k < s.pg_n; ++k) named(s.pg_txt[static_cast<size_t>(k)]);
    for (int32_t k = 0; k < s.ln_n + s.ln_nact; ++k) named(s.ln_txt[static_cast<size_t>(k)]);
    for (int32_t k = 0; k < s.pt_n + s.pt_nx; ++k) named(s.pt_txt[static_cast<size_t>(k)]);
    EXPECT_EQ(s.codepage, 1252);
    EXPECT_GE(accented, 5);
}

}  // namespace

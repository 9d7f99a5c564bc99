// A small project of points, lines and polygons with night and opacity
// variants, opened in the editor by the tests of those variants; and the
// look of a picture, pixel by pixel, to compare pictures whose palettes a
// save may have put in another order.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "editor/editor_apply.h"
#include "editor/element_open.h"
#include "editor/point_pictures.h"
#include "support/harness.h"
#include "text/load_driver.h"
#include "text/text_writer.h"

namespace korvex::editor::variants {

// Rows: point 0 has a night picture (day Colormode=16, night Colormode=32);
// point 1 is plain with three colours and a transparent fourth; point 2 is
// a colormode 32 point; line 0 is a two-colour bitmap line with a
// transparent second colour; polygon 0 a bitmap polygon, polygon 1 solid.
inline const char* k_project =
    "[_id]\nFID=7\nCodePage=1252\n[end]\n"
    "[_drawOrder]\nType=0x01,1\nType=0x02,2\n[end]\n"
    "[_polygon]\nType=0x01\nXpm=\"32 32 2 1\"\n\"0 c #00FF00\"\n\"1 c #0000FF\"\n"
    "\"01010101010101010101010101010101\"\n[end]\n"
    "[_polygon]\nType=0x02\nXpm=\"0 0 1 0\"\n\"0 c #0000FF\"\n[end]\n"
    "[_line]\nType=0x05\nXpm=\"32 2 2 1\"\n\"0 c #FF0000\"\n\"1 c none\"\n"
    "\"00000000111111110000000011111111\"\n\"11111111000000001111111100000000\"\n[end]\n"
    "[_point]\nType=0x2f\nString1=0x04,Pub\n"
    "DayXpm=\"4 2 2 1\" Colormode=16\n\"! c #FFFFFF\"\n\"  c none\"\n\"!!  \"\n\"  !!\"\n"
    "NightXpm=\"4 2 3 1\" Colormode=32\n\"a c #FF0000\" alpha=3\n\"b c #00FF00\" alpha=0\n\"c c #000000\" alpha=15\n"
    "\"abca\"\n\"ccba\"\n[end]\n"
    "[_point]\nType=0x30\nDayXpm=\"3 2 4 1\" Colormode=16\n\"! c #FF0000\"\n\"# c #00FF00\"\n\"% c #0000FF\"\n\"& c none\"\n"
    "\"!#%\"\n\"&&!\"\n[end]\n"
    "[_point]\nType=0x31\nDayXpm=\"2 2 2 1\" Colormode=32\n\"! c #FF0000\" alpha=2\n\"# c #00FF00\" alpha=0\n"
    "\"!#\"\n\"#!\"\n[end]\n";

// Rows of the points of k_project, and the colour that stands for
// transparent in the editor.
constexpr int32_t k_night_point = 0, k_plain_point = 1, k_alpha_point = 2;
constexpr uint32_t k_magenta = k_transparent_magenta;

struct Project {
    model::Store s;
    platform::ScriptedPrompt ui;
    explicit Project(const std::string& text = k_project) {
        model::newproject(s);
        EXPECT_TRUE(text::load_txt(s, ui, "t.txt", text, false, true));
        s.dirty = false;
    }
    EditorSession open(int cls, int32_t row) const {
        OpenRequest r;
        r.curclass = cls;
        r.row = row;
        return open_element(s, r);
    }
    std::string code(int cls, int32_t row) { return text::create_code(s, row + 1, cls, false); }
};

// What a picture shows at each pixel: its colour and level; a fully
// transparent pixel is transparent whatever colour stands for it.
using Look = std::vector<std::pair<uint32_t, int>>;
inline Look look(const PointPicture& p, uint32_t marker) {
    Look out;
    for (int y = 0; y < p.pixels.height(); ++y)
        for (int x = 0; x < p.pixels.width(); ++x) {
            const int entry = p.pixels.at(x, y) + 1;
            uint32_t c = p.truecolour ? p.surface.at(x, y) : p.palette.colour(entry);
            int level = p.truecolour ? (p.alpha ? p.opacity.at(x, y) : 0) : p.alpha ? level_of(p.palette, entry, marker) : 0;
            if (c == marker) level = 15;
            if (level == 15) c = 0;
            out.emplace_back(c, level);
        }
    return out;
}

// The project saved as text and read again, and saved as TYP and decoded.
inline std::string as_text(model::Store& s, platform::Prompt& ui) { return testing::text_of(s, ui); }
inline void reload_text(model::Store& into, platform::Prompt& ui, const std::string& text) {
    model::newproject(into);
    EXPECT_TRUE(text::load_txt(into, ui, "again.txt", text, false, true));
}
inline void reload_typ(model::Store& into, platform::Prompt& ui, model::Store& from) {
    const std::string bytes = testing::encode(from, ui);
    ASSERT_FALSE(bytes.empty());
    testing::decode_bytes(into, ui, bytes);
}

inline bool has(const std::string& t, const std::string& w) { return t.find(w) != std::string::npos; }

}  // namespace korvex::editor::variants

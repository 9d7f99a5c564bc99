// Text drawn into pixels, for the editor's text stamp: the platform renders
// the glyphs; the logic only places the covered pixels.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace korvex::platform {

// Pixels a text covers, row by row (y * width + x); 1 covered, 0 not.
struct TextMask {
    int width = 0, height = 0;
    std::vector<uint8_t> on;
    bool covered(int x, int y) const {
        return x >= 0 && y >= 0 && x < width && y < height && on[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
    }
};

struct TextStyle {
    std::string font = "Arial";
    int pixel_size = 12;
    bool bold = false, italic = false;
};

class TextRasteriser {
public:
    virtual ~TextRasteriser() = default;
    // utf8 text as one line, without anti-aliasing: a pixel is in or out.
    virtual TextMask render(const std::string& utf8, const TextStyle& style) const = 0;
};

// For tests and the command line: each character a solid bar one pixel wide
// and pixel_size high, with a gap of one; a blank leaves a gap of two.
class BarTextRasteriser : public TextRasteriser {
public:
    TextMask render(const std::string& utf8, const TextStyle& style) const override {
        TextMask m;
        m.height = style.pixel_size > 0 ? style.pixel_size : 1;
        m.width = static_cast<int>(utf8.size()) * 2;
        m.on.assign(static_cast<size_t>(m.width) * static_cast<size_t>(m.height), 0);
        for (size_t i = 0; i < utf8.size(); ++i) {
            if (utf8[i] == ' ') continue;
            for (int y = 0; y < m.height; ++y) m.on[static_cast<size_t>(y) * static_cast<size_t>(m.width) + i * 2] = 1;
        }
        return m;
    }
};

}  // namespace korvex::platform

// The drawing surface of the icon editor: a grid of 24-bit colours, one entry
// a bitmap pixel, red in the low byte as everywhere in the program. The
// widget enlarges it for display; the logic never deals in screen cells, so
// a tool gives the same pixels at every zoom.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvex::editor {

// The colour that shows transparency on the surface and in palette cells:
// magenta 0xFF11FF by default, light grey 240,240,240 by option. A palette
// entry is transparent exactly when its colour equals it.
constexpr uint32_t k_transparent_magenta = 0xFF11FF;
constexpr uint32_t k_transparent_grey = 0xF0F0F0;

constexpr uint32_t rgb(uint32_t r, uint32_t g, uint32_t b) { return (r & 0xFF) | (g & 0xFF) << 8 | (b & 0xFF) << 16; }
constexpr uint32_t red_of(uint32_t c) { return c & 0xFF; }
constexpr uint32_t green_of(uint32_t c) { return (c >> 8) & 0xFF; }
constexpr uint32_t blue_of(uint32_t c) { return (c >> 16) & 0xFF; }
// Halves go to the even neighbour, as the colour maths expects.
inline int round_even(double v) { return static_cast<int>(std::nearbyint(v)); }

class Raster {
public:
    Raster() = default;
    Raster(int width, int height, uint32_t fill = 0)
        : width_(width > 0 ? width : 0), height_(height > 0 ? height : 0),
          px_(static_cast<size_t>(width_) * static_cast<size_t>(height_), fill) {}

    int width() const { return width_; }
    int height() const { return height_; }
    bool empty() const { return px_.empty(); }
    bool inside(int x, int y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }

    // Reads outside the grid give 0 and writes there are dropped, so a tool
    // dragged past the edge needs no clipping of its own.
    uint32_t at(int x, int y) const { return inside(x, y) ? px_[index(x, y)] : 0; }
    void set(int x, int y, uint32_t colour) {
        if (inside(x, y)) px_[index(x, y)] = colour & 0xFFFFFF;
    }
    void fill(uint32_t colour) { px_.assign(px_.size(), colour & 0xFFFFFF); }

    // Row-major, y * width + x.
    const std::vector<uint32_t>& pixels() const { return px_; }
    std::vector<uint32_t>& pixels() { return px_; }

    bool operator==(const Raster&) const = default;

private:
    size_t index(int x, int y) const { return static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x); }
    int width_ = 0;
    int height_ = 0;
    std::vector<uint32_t> px_;
};

}  // namespace korvex::editor

// A plane of bytes over the bitmap, addressed [x][y] from 0: the palette
// index of each pixel (one less than the palette entry number), or the
// opacity level of each pixel. Stored row by row, y * width + x.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvex::editor {

class PixelGrid {
public:
    PixelGrid() = default;
    PixelGrid(int width, int height, uint8_t fill = 0)
        : width_(width > 0 ? width : 0), height_(height > 0 ? height : 0),
          v_(static_cast<size_t>(width_) * static_cast<size_t>(height_), fill) {}

    int width() const { return width_; }
    int height() const { return height_; }
    bool empty() const { return v_.empty(); }
    bool inside(int x, int y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }

    // Outside the plane a read gives 0 and a write is dropped.
    uint8_t at(int x, int y) const { return inside(x, y) ? v_[index(x, y)] : 0; }
    void set(int x, int y, uint8_t value) {
        if (inside(x, y)) v_[index(x, y)] = value;
    }
    void fill(uint8_t value) { v_.assign(v_.size(), value); }

    const std::vector<uint8_t>& values() const { return v_; }
    std::vector<uint8_t>& values() { return v_; }

    bool operator==(const PixelGrid&) const = default;

private:
    size_t index(int x, int y) const { return static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x); }
    int width_ = 0;
    int height_ = 0;
    std::vector<uint8_t> v_;
};

}  // namespace korvex::editor

// Small pictures and working copies for the tests of image import, paste
// and size changes; W, K and M serve the other editor tests too.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "editor/canvas.h"
#include "platform/images.h"

namespace korvex::editor::fixtures {

// Palette colours: white, black and the transparent marker.
constexpr uint32_t W = 0xFFFFFF, K = 0x000000, M = k_transparent_magenta;
// Image pixels, 0xAARRGGBB.
constexpr uint32_t red = 0xFFFF0000, green = 0xFF00FF00, blue = 0xFF0000FF, clear = 0x00000000;

inline platform::Image filled(int w, int h, uint32_t argb) {
    return {w, h, std::vector<uint32_t>(static_cast<size_t>(w * h), argb)};
}

// A point of the palette, "10" over "01" in its top left corner.
inline EditorSession point(int w, int h, std::vector<uint32_t> palette = {W, K, M}) {
    EditorSession e;
    e.curclass = 2;
    e.palette.colours = std::move(palette);
    resize_picture(e, w, h);
    e.pixels.set(0, 0, 1);
    e.pixels.set(1, 1, 1);
    painticon(e);
    start_history(e);
    e.width_box = w;
    e.height_box = h;
    e.curcol = 1;
    return e;
}

// Rows of palette indices as digits.
inline std::string rows_of(const EditorSession& e) {
    std::string out;
    for (int y = 0; y < e.height; ++y) {
        for (int x = 0; x < e.width; ++x) out += static_cast<char>('0' + e.pixels.at(x, y));
        out += '\n';
    }
    return out;
}

// A folder of the test's own, removed afterwards.
struct TempDir {
    std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                ("korvex_" + std::to_string(::getpid()) + "_" +
                                 ::testing::UnitTest::GetInstance()->current_test_info()->name());
    TempDir() { std::filesystem::create_directories(dir); }
    ~TempDir() { std::filesystem::remove_all(dir); }
    std::string file(const std::string& name) const { return (dir / name).string(); }
};

}  // namespace korvex::editor::fixtures

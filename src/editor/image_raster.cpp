#include "editor/image_raster.h"

#include <algorithm>

namespace korvex::editor {

namespace {

// The source span [first, last) behind target pixel i of n over a source of m.
void source_span(int i, int n, int m, int& first, int& last) {
    first = static_cast<int>(static_cast<int64_t>(i) * m / n);
    last = static_cast<int>(static_cast<int64_t>(i + 1) * m / n);
    if (last <= first) last = first + 1;
}

template <typename Plane>
Plane nearest(const Plane& in, int width, int height) {
    Plane out(width, height);
    if (in.empty()) return out;
    for (int y = 0; y < out.height(); ++y) {
        const int sy = static_cast<int>(static_cast<int64_t>(y) * in.height() / out.height());
        for (int x = 0; x < out.width(); ++x)
            out.set(x, y, in.at(static_cast<int>(static_cast<int64_t>(x) * in.width() / out.width()), sy));
    }
    return out;
}

}  // namespace

platform::Image stretch_image(const platform::Image& in, int width, int height) {
    platform::Image out;
    out.width = std::max(width, 0);
    out.height = std::max(height, 0);
    out.argb.assign(static_cast<size_t>(out.width) * static_cast<size_t>(out.height), 0);
    if (in.width <= 0 || in.height <= 0 || in.argb.size() < static_cast<size_t>(in.width) * static_cast<size_t>(in.height))
        return out;
    for (int y = 0; y < out.height; ++y) {
        int y0, y1;
        source_span(y, out.height, in.height, y0, y1);
        for (int x = 0; x < out.width; ++x) {
            int x0, x1;
            source_span(x, out.width, in.width, x0, x1);
            uint64_t r = 0, g = 0, b = 0, a = 0, n = 0;
            for (int sy = y0; sy < y1; ++sy)
                for (int sx = x0; sx < x1; ++sx) {
                    const uint32_t c = in.argb[static_cast<size_t>(sy) * static_cast<size_t>(in.width) + static_cast<size_t>(sx)];
                    const uint32_t ca = c >> 24;
                    r += (c >> 16 & 0xFF) * ca;
                    g += (c >> 8 & 0xFF) * ca;
                    b += (c & 0xFF) * ca;
                    a += ca;
                    ++n;
                }
            uint32_t px = 0;
            if (a > 0) {
                // Rounded to the nearest value, so one source pixel comes through unchanged.
                const auto ch = [a](uint64_t sum) { return static_cast<uint32_t>((sum + a / 2) / a); };
                px = static_cast<uint32_t>((a + n / 2) / n) << 24 | ch(r) << 16 | ch(g) << 8 | ch(b);
            }
            out.argb[static_cast<size_t>(y) * static_cast<size_t>(out.width) + static_cast<size_t>(x)] = px;
        }
    }
    return out;
}

Raster stretch_raster(const Raster& in, int width, int height) { return nearest(in, width, height); }
PixelGrid stretch_grid(const PixelGrid& in, int width, int height) { return nearest(in, width, height); }

void fit_proportions(int picture_w, int picture_h, int& width, int& height) {
    if (picture_w <= 0 || picture_h <= 0 || width <= 0 || height <= 0) return;
    // The side that meets its limit first decides.
    if (static_cast<int64_t>(picture_w) * height >= static_cast<int64_t>(picture_h) * width) {
        height = std::max(1, static_cast<int>(static_cast<int64_t>(picture_h) * width / picture_w));
    } else {
        width = std::max(1, static_cast<int>(static_cast<int64_t>(picture_w) * height / picture_h));
    }
}

}  // namespace korvex::editor

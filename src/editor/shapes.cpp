#include "editor/shapes.h"

#include <algorithm>
#include <cstdlib>

namespace korvex::editor {

namespace {

void dot(Raster& r, int x, int y, uint32_t colour, int pen) {
    if (pen <= 1) {
        r.set(x, y, colour);
        return;
    }
    const int from = pen / 2;
    for (int dy = 0; dy < pen; ++dy)
        for (int dx = 0; dx < pen; ++dx) r.set(x - from + dx, y - from + dy, colour);
}

void fill_span(Raster& r, int xa, int xb, int y, uint32_t colour) {
    if (xa > xb) std::swap(xa, xb);
    for (int x = xa; x <= xb; ++x) r.set(x, y, colour);
}

}  // namespace

void draw_line(Raster& r, int x0, int y0, int x1, int y1, uint32_t colour, int pen) {
    // Bresenham: every step moves one pixel along the longer axis.
    const int dx = std::abs(x1 - x0), sx = x0 < x1 ? 1 : -1;
    const int dy = -std::abs(y1 - y0), sy = y0 < y1 ? 1 : -1;
    int err = dx + dy;
    for (;;) {
        dot(r, x0, y0, colour, pen);
        if (x0 == x1 && y0 == y1) break;
        const int e2 = 2 * err;
        if (e2 >= dy) {
            err += dy;
            x0 += sx;
        }
        if (e2 <= dx) {
            err += dx;
            y0 += sy;
        }
    }
}

void draw_rectangle(Raster& r, int x0, int y0, int x1, int y1, uint32_t colour, bool filled, int pen) {
    if (x0 > x1) std::swap(x0, x1);
    if (y0 > y1) std::swap(y0, y1);
    if (filled) {
        for (int y = y0; y <= y1; ++y) fill_span(r, x0, x1, y, colour);
        return;
    }
    pen = std::max(pen, 1);
    // The pen lies inside the box, so the figure keeps the corners given.
    for (int k = 0; k < pen; ++k) {
        const int ax = x0 + k, bx = x1 - k, ay = y0 + k, by = y1 - k;
        if (ax > bx || ay > by) break;
        fill_span(r, ax, bx, ay, colour);
        fill_span(r, ax, bx, by, colour);
        for (int y = ay; y <= by; ++y) {
            r.set(ax, y, colour);
            r.set(bx, y, colour);
        }
    }
}

void draw_ellipse(Raster& r, int x0, int y0, int x1, int y1, uint32_t colour, bool filled) {
    if (x0 > x1) std::swap(x0, x1);
    if (y0 > y1) std::swap(y0, y1);
    if (x1 - x0 < 2 || y1 - y0 < 2) {
        // Too thin for a curve: the box itself.
        draw_rectangle(r, x0, y0, x1, y1, colour, true);
        return;
    }
    // The integer ellipse in a box, with both axes even or odd (after
    // Zingl's rasteriser): error terms kept in 64 bits for large boxes.
    long long a = x1 - x0, b = y1 - y0, b1 = b & 1;
    long long dx = 4 * (1 - a) * b * b, dy = 4 * (b1 + 1) * a * a;
    long long err = dx + dy + b1 * a * a, e2;
    int left = x0, right = x1;
    int top = y0 + static_cast<int>((b + 1) / 2);
    int bottom = top - static_cast<int>(b1);
    const long long aa = 8 * a * a, bb = 8 * b * b;
    auto plot4 = [&](int xl, int xr, int yt, int yb) {
        if (filled) {
            fill_span(r, xl, xr, yt, colour);
            fill_span(r, xl, xr, yb, colour);
        } else {
            r.set(xr, yt, colour);
            r.set(xl, yt, colour);
            r.set(xl, yb, colour);
            r.set(xr, yb, colour);
        }
    };
    do {
        plot4(left, right, top, bottom);
        e2 = 2 * err;
        if (e2 <= dy) {
            ++top;
            --bottom;
            dy += aa;
            err += dy;
        }
        if (e2 >= dx || 2 * err > dy) {
            ++left;
            --right;
            dx += bb;
            err += dx;
        }
    } while (left <= right);
    // Flat ends of a tall ellipse.
    while (top - bottom <= b) {
        r.set(left - 1, top, colour);
        r.set(right + 1, top, colour);
        r.set(left - 1, bottom, colour);
        r.set(right + 1, bottom, colour);
        ++top;
        --bottom;
    }
}

}  // namespace korvex::editor

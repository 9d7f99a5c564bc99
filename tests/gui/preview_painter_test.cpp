// The preview's painter by its pixels: small hand-made projects drawn on
// small scenes, probed where the style says what a device shows.
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include "gui/preview_painter.h"
#include "preview/draw_list.h"
#include "preview/preview_fixture.h"

using namespace korvex;
using namespace korvex::preview;
using namespace korvex::preview_test;

namespace {

QImage render(model::Store& s, const Scene& sc, double zoom = 1, bool night = false) {
    DrawOptions o;
    o.zoom = zoom;
    o.night = night;
    return gui::render_preview_image(gui::PreparedPreview(build_draw_list(s, sc, o)));
}

uint32_t rgb_at(const QImage& img, int x, int y) { return img.pixel(x, y) & 0xFFFFFF; }

// A 32 x 32 pattern of one colour ("H") on every fourth column, the rest
// transparent.
std::string striped_polygon(const std::string& type, const std::string& rgb) {
    std::string rows;
    for (int y = 0; y < 32; ++y) rows += "\"H...H...H...H...H...H...H...H...\"\r\n";
    return "[_polygon]\r\nType=" + type + "\r\nXpm=\"32 32 2 1\"\r\n\"H c #" + rgb + "\"\r\n\". c none\"\r\n" + rows +
           "[end]\r\n";
}

}  // namespace

TEST(PreviewPainter, PolygonColourAndTheHigherLevelWhereTwoOverlap) {
    // The scene lists the higher polygon first: the level decides, not the scene.
    model::Store s = project("[_drawOrder]\r\nType=0x02,1\r\nType=0x03,2\r\n[end]\r\n" + solid_polygon("0x02", "CC0000") +
                             solid_polygon("0x03", "0000CC"));
    const Scene sc = scene_of({square(0x0300, 40, 40, 40), square(0x0200, 10, 10, 50)});
    for (const double zoom : {1.0, 2.0}) {
        const QImage img = render(s, sc, zoom);
        const auto z = static_cast<int>(zoom);
        EXPECT_EQ(rgb_at(img, 20 * z, 20 * z), 0xCC0000u) << zoom;   // the lower one alone
        EXPECT_EQ(rgb_at(img, 50 * z, 50 * z), 0x0000CCu) << zoom;   // the overlap
        EXPECT_EQ(rgb_at(img, 70 * z, 70 * z), 0x0000CCu) << zoom;   // the higher one alone
        EXPECT_EQ(rgb_at(img, 5 * z, 5 * z), img.pixel(95 * z, 5 * z) & 0xFFFFFF) << zoom;  // the ground
        // The last pixel row and column inside the lower polygon, and one past.
        EXPECT_EQ(rgb_at(img, 59 * z + z - 1, 20 * z), 0xCC0000u) << zoom;
        EXPECT_NE(rgb_at(img, 60 * z, 20 * z), 0xCC0000u) << zoom;
    }
}

TEST(PreviewPainter, TransparentPatternPixelsShowTheLowerPolygonAndThePatternKeepsToTheScreen) {
    model::Store s = project("[_drawOrder]\r\nType=0x02,1\r\nType=0x03,2\r\n[end]\r\n" + solid_polygon("0x02", "00AA00") +
                             striped_polygon("0x03", "440088"));
    const Scene sc = scene_of({square(0x0200, 0, 0, 100), square(0x0300, 10, 10, 80)});
    const gui::PreparedPreview prep(build_draw_list(s, sc, {}));
    ASSERT_FALSE(prep.list().polygons[1].solid);
    // Painted at two offsets: the stripes stay on every fourth column of the
    // image, wherever the scene lies.
    for (const int shift : {0, 3}) {
        QImage img(100, 100, QImage::Format_ARGB32_Premultiplied);
        img.fill(Qt::white);
        QPainter p(&img);
        gui::paint_preview(p, prep, QPointF(shift, shift));
        p.end();
        for (int x = 40; x < 48; ++x)
            EXPECT_EQ(rgb_at(img, x, 50), x % 4 == 0 ? 0x440088u : 0x00AA00u) << "x " << x << " shift " << shift;
    }
}

TEST(PreviewPainter, LineOfWidthAndBorderIsWidthPlusTwoBordersAcross) {
    // Odd and even widths, lying and standing lines.
    struct Case {
        int width, border;
    };
    for (const Case c : {Case{5, 1}, Case{4, 1}, Case{3, 0}, Case{6, 2}}) {
        model::Store s = project("[_line]\r\nType=0x01\r\nLineWidth=" + std::to_string(c.width) + "\r\nBorderWidth=" +
                                 std::to_string(c.border) + "\r\nXpm=\"0 0 2 0\"\r\n\"1 c #FF0000\"\r\n\"2 c #0000FF\"\r\n[end]\r\n");
        const Scene sc = scene_of({feature(FeatureClass::line, 0x0100, {{10, 30}, {90, 30}}),
                                   feature(FeatureClass::line, 0x0100, {{70, 50}, {70, 95}})});
        const QImage img = render(s, sc);
        const std::string name = std::to_string(c.width) + "+" + std::to_string(c.border);
        ASSERT_EQ(img.pixel(0, 0) & 0xFFFFFF, img.pixel(40, 10) & 0xFFFFFF);
        const uint32_t ground = img.pixel(0, 0) & 0xFFFFFF;
        auto across = [&](bool lying) {
            std::vector<uint32_t> out;
            for (int k = 0; k < 100; ++k) {
                const uint32_t px = lying ? rgb_at(img, 40, k) : rgb_at(img, k, 75);
                if (px != ground) out.push_back(px);
            }
            return out;
        };
        for (const bool lying : {true, false}) {
            const std::vector<uint32_t> cut = across(lying);
            ASSERT_EQ(cut.size(), static_cast<size_t>(c.width + 2 * c.border)) << name << (lying ? " lying" : " standing");
            for (size_t k = 0; k < cut.size(); ++k) {
                const bool edge = k < static_cast<size_t>(c.border) || k >= cut.size() - c.border;
                EXPECT_EQ(cut[k], edge ? 0x0000FFu : 0xFF0000u) << name << " pixel " << k;
            }
        }
    }
}

TEST(PreviewPainter, PointCentrePixelIsItsPictureCentrePixelAtEachZoom) {
    // Pictures of odd and even sides, each pixel of its own colour.
    for (const int side : {5, 6}) {
        std::string xpm = "[_point]\r\nType=0x2a06\r\nDayXpm=\"" + std::to_string(side) + " " + std::to_string(side) + " " +
                          std::to_string(side * side) + " 2\"\r\n";
        auto code = [](int k) { return std::string{static_cast<char>('A' + k / 26), static_cast<char>('a' + k % 26)}; };
        for (int k = 0; k < side * side; ++k)
            xpm += "\"" + code(k) + " c #" + QColor(40 + k * 4, 200 - k * 3, 7 * k % 256).name().mid(1).toStdString() + "\"\r\n";
        for (int y = 0; y < side; ++y) {
            xpm += "\"";
            for (int x = 0; x < side; ++x) xpm += code(y * side + x);
            xpm += "\"\r\n";
        }
        model::Store s = project(xpm + "[end]\r\n");
        const Scene sc = scene_of({feature(FeatureClass::point, 0x2a06, {{50, 40}})});
        for (const int zoom : {1, 2, 3}) {
            DrawOptions o;
            o.zoom = zoom;
            const gui::PreparedPreview prep(build_draw_list(s, sc, o));
            ASSERT_EQ(prep.list().points.size(), 1u);
            const Raster& pic = *prep.list().points[0].picture;
            ASSERT_EQ(pic.w, side);
            const QImage img = gui::render_preview_image(prep);
            const uint32_t centre = pic.at(side / 2, side / 2) & 0xFFFFFF;
            EXPECT_EQ(rgb_at(img, 50 * zoom, 40 * zoom), centre) << side << " zoom " << zoom;
            // The picture's first pixel at its corner, the ground just before it.
            const int left = 50 * zoom - side * zoom / 2, top = 40 * zoom - side * zoom / 2;
            EXPECT_EQ(rgb_at(img, left, top), pic.at(0, 0) & 0xFFFFFF) << side << " zoom " << zoom;
            EXPECT_EQ(img.pixel(left - 1, top), img.pixel(0, 0)) << side << " zoom " << zoom;
        }
    }
}

TEST(PreviewPainter, MissingTypesAreGreyWithAThinOutline) {
    model::Store s = project(solid_polygon("0x02", "00FF00"));
    const Scene sc = scene_of({square(0x0700, 10, 10, 40)});
    const QImage img = render(s, sc);
    EXPECT_EQ(img.pixel(10, 30), QColor::fromRgba(k_missing_outline).rgba());
    const QColor inside = img.pixelColor(30, 30);
    EXPECT_EQ(inside.red(), inside.green());
    EXPECT_EQ(inside.green(), inside.blue());
    EXPECT_NE(img.pixel(30, 30), img.pixel(10, 30));
}

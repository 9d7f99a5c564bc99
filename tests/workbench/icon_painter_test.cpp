// The icon painters: hand-made elements read by the text readers give exact
// pixels, the bundled sample gives known ones, bad columns paint empty with
// one report line, and every corpus element paints at its declared size.
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "support/harness.h"
#include "text/load_driver.h"
#include "workbench/icon_painter.h"

using namespace korvex;
using namespace korvex::testing;
using workbench::Raster;

namespace {

constexpr uint32_t k_bg = 0x12345678;  // not opaque, so it cannot pass for a picture colour

std::string rows(const std::string& first, char fill, int count, int width = 32) {
    std::string out = "\"" + first + std::string(static_cast<size_t>(width) - first.size(), fill) + "\"\r\n";
    for (int k = 1; k < count; ++k) out += "\"" + std::string(static_cast<size_t>(width), fill) + "\"\r\n";
    return out;
}

struct Loaded {
    model::Store s;
    platform::ScriptedPrompt ui;
    explicit Loaded(const std::string& sections) {
        const std::string text = "[_id]\r\nProductCode=1\r\nFID=1\r\nCodePage=1252\r\n[end]\r\n" + sections;
        EXPECT_TRUE(text::load_txt(s, ui, "/test/icons.txt", text, false, true));
    }
};

size_t report_lines(const model::Store& s) {
    size_t n = 0;
    for (char c : s.loadrep) n += c == '\n';
    return n;
}

// The pixels of a raster row as hex words, for readable failures.
std::string row_of(const Raster& r, int y, int from, int count) {
    std::string out;
    char buf[12];
    for (int x = from; x < from + count; ++x) {
        std::snprintf(buf, sizeof buf, "%08X ", r.at(x, y));
        out += buf;
    }
    return out;
}

TEST(IconPainter, PolygonsSolidTileTransparentAndNight) {
    Loaded p("[_polygon]\r\nType=0x01\r\nXpm=\"0 0 1 0\"\r\n\"1 c #112233\"\r\n[end]\r\n"
             "[_polygon]\r\nType=0x02\r\nXpm=\"0 0 2 0\"\r\n\"2 c #FFE0A0\"\r\n\"3 c #404020\"\r\n[end]\r\n"
             "[_polygon]\r\nType=0x03\r\nXpm=\"32 32 2 1\"\r\n\"a c none\"\r\n\"b c #0000FF\"\r\n" +
             rows("ba", 'a', 32) + "[end]\r\n" +
             "[_polygon]\r\nType=0x04\r\nXpm=\"32 32 4 1\"\r\n\"0 c #000001\"\r\n\"1 c #000002\"\r\n"
             "\"2 c #000003\"\r\n\"3 c #000004\"\r\n" + rows("01", '0', 32) + "[end]\r\n");
    ASSERT_EQ(p.s.pg_n, 4);
    model::Store& s = p.s;

    const Raster solid = workbench::paintpgn(s, 0, k_bg);
    ASSERT_EQ(solid.w, 32);
    ASSERT_EQ(solid.h, 32);
    EXPECT_EQ(solid.fit, workbench::IconFit::tile);
    EXPECT_EQ(std::count(solid.px.begin(), solid.px.end(), 0xFF112233u), 1024);
    EXPECT_FALSE(workbench::has_night(s, model::k_polygons, 0));
    EXPECT_EQ(workbench::paintpgn(s, 0, k_bg, true).px, solid.px);

    EXPECT_EQ(workbench::paintpgn(s, 1, k_bg).at(31, 31), 0xFFFFE0A0u);
    EXPECT_EQ(workbench::paintpgn(s, 1, k_bg, true).at(0, 0), 0xFF404020u);
    EXPECT_TRUE(workbench::has_night(s, model::k_polygons, 1));

    const Raster tile = workbench::paintpgn(s, 2, k_bg);
    EXPECT_EQ(row_of(tile, 0, 0, 3), "FF0000FF 12345678 12345678 ");
    EXPECT_EQ(tile.at(0, 31), k_bg);

    EXPECT_EQ(row_of(workbench::paintpgn(s, 3, k_bg), 0, 0, 3), "FF000001 FF000002 FF000001 ");
    EXPECT_EQ(row_of(workbench::paintpgn(s, 3, k_bg, true), 0, 0, 3), "FF000003 FF000004 FF000003 ");
    EXPECT_TRUE(s.loadrep.empty()) << s.loadrep;

    // No colours at all: a tile of background, said once.
    s.pg_col[0].clear();
    const Raster blank = workbench::paintpgn(s, 0, k_bg);
    EXPECT_EQ(blank.w, 32);
    EXPECT_EQ(std::count(blank.px.begin(), blank.px.end(), k_bg), 1024);
    EXPECT_EQ(s.loadrep, "Empty colour!\r\n");
}

TEST(IconPainter, LinesFromWidthAndBorderOrRowsWithNight) {
    Loaded p("[_line]\r\nType=0x01\r\nLineWidth=2\r\nBorderWidth=1\r\nXpm=\"0 0 2 0\"\r\n"
             "\"1 c #AA0000\"\r\n\"2 c #00BB00\"\r\n[end]\r\n"
             "[_line]\r\nType=0x02\r\nLineWidth=3\r\nXpm=\"0 0 2 0\"\r\n\"1 c #AA0000\"\r\n\"2 c #00BB00\"\r\n[end]\r\n"
             "[_line]\r\nType=0x03\r\nXpm=\"32 2 4 1\"\r\n\"0 c #000001\"\r\n\"1 c none\"\r\n"
             "\"2 c #000003\"\r\n\"3 c none\"\r\n" + rows("01", '1', 2) + "[end]\r\n");
    ASSERT_EQ(p.s.ln_n, 3);
    model::Store& s = p.s;

    const Raster bordered = workbench::paintline(s, 0, k_bg);
    ASSERT_EQ(bordered.w, 32);
    ASSERT_EQ(bordered.h, 4);
    EXPECT_EQ(bordered.fit, workbench::IconFit::rows);
    EXPECT_EQ(row_of(bordered, 0, 30, 2) + row_of(bordered, 1, 0, 1) + row_of(bordered, 2, 31, 1) +
                  row_of(bordered, 3, 0, 1),
              "FF00BB00 FF00BB00 FFAA0000 FFAA0000 FF00BB00 ");
    EXPECT_FALSE(workbench::has_night(s, model::k_lines, 0));

    // Two colours without a border are the day and the night colour.
    const Raster day = workbench::paintline(s, 1, k_bg), night = workbench::paintline(s, 1, k_bg, true);
    ASSERT_EQ(day.h, 3);
    EXPECT_EQ(day.at(5, 2), 0xFFAA0000u);
    EXPECT_EQ(night.at(5, 2), 0xFF00BB00u);

    const Raster bitmap = workbench::paintline(s, 2, k_bg);
    ASSERT_EQ(bitmap.h, 2);
    EXPECT_EQ(row_of(bitmap, 0, 0, 3) + row_of(bitmap, 1, 0, 1), "FF000001 12345678 12345678 12345678 ");
    EXPECT_EQ(workbench::paintline(s, 2, k_bg, true).at(0, 0), 0xFF000003u);
    EXPECT_TRUE(s.loadrep.empty()) << s.loadrep;
}

TEST(IconPainter, PointsTransparencyAlphaTwoCharacterSymbolsAndNight) {
    std::string wide = "[_point]\r\nType=0x2f03\r\nXpm=\"2 1 32 2\"\r\n";
    for (int k = 0; k < 32; ++k) {
        char line[40];
        std::snprintf(line, sizeof line, "\"%c%c c #0000%02X\"\r\n", 'A' + k / 16, 'a' + k % 16, k);
        wide += line;
    }
    wide += "\"AaBp\"\r\n[end]\r\n";
    Loaded p("[_point]\r\nType=0x2f01\r\nXpm=\"3 2 3 1\"\r\n\"a c #FF0000\"\r\n\"b c none\"\r\n\"c c #0000FF\"\r\n"
             "\"abc\"\r\n\"cba\"\r\n[end]\r\n"
             "[_point]\r\nType=0x2f02\r\nDayXpm=\"2 1 2 1\" Colormode=32\r\n\"a c #FF0000\" alpha=15\r\n"
             "\"b c #00FF00\" alpha=0\r\n\"ab\"\r\n[end]\r\n" +
             wide +
             "[_point]\r\nType=0x2f04\r\nDayXpm=\"2 1 1 1\"\r\n\"a c #111111\"\r\n\"aa\"\r\n"
             "NightXpm=\"2 1 2 1\"\r\n\"a c #222222\"\r\n\"b c #333333\"\r\n\"ab\"\r\n[end]\r\n");
    ASSERT_EQ(p.s.pt_n, 4);
    model::Store& s = p.s;

    const Raster plain = workbench::paintpoi(s, 0, k_bg);
    ASSERT_EQ(plain.w, 3);
    ASSERT_EQ(plain.h, 2);
    EXPECT_EQ(plain.fit, workbench::IconFit::picture);
    EXPECT_EQ(row_of(plain, 0, 0, 3) + row_of(plain, 1, 0, 3), "FFFF0000 12345678 FF0000FF FF0000FF 12345678 FFFF0000 ");

    EXPECT_EQ(row_of(workbench::paintpoi(s, 1, k_bg), 0, 0, 2), "12345678 FF00FF00 ");
    EXPECT_EQ(row_of(workbench::paintpoi(s, 2, k_bg), 0, 0, 2), "FF000000 FF00001F ");

    EXPECT_TRUE(workbench::has_night(s, model::k_points, 3));
    EXPECT_FALSE(workbench::has_night(s, model::k_points, 0));
    EXPECT_EQ(row_of(workbench::paintpoi(s, 3, k_bg), 0, 0, 2), "FF111111 FF111111 ");
    EXPECT_EQ(row_of(workbench::paintpoi(s, 3, k_bg, true), 0, 0, 2), "FF222222 FF333333 ");
    // Without a night picture the night view is the day one.
    EXPECT_EQ(workbench::paintpoi(s, 0, k_bg, true).px, plain.px);
    EXPECT_TRUE(s.loadrep.empty()) << s.loadrep;
}

TEST(IconPainter, PointHeadsWithoutPictureOrPalette) {
    model::Store s;
    model::procredim(s, model::k_points, 1);
    s.pt_n = 1;
    s.pt_typ[0] = "02F00";
    s.pt_col[0] = "\"$ c #FF0000\"";
    s.pt_bmp[0] = "$$\r\n";
    for (const char* head : {"0 0 0 1", "0 0 0 0", "1 1 0 1"}) {
        s.pt_xpm[0] = std::string("DayXpm=\"") + head + "\" Colormode=0";
        const Raster r = workbench::paintpoi(s, 0, k_bg);
        EXPECT_TRUE(r.empty()) << head;
        EXPECT_FALSE(r.question) << head;
    }
    // A readable head without rows: the cell shows "?" and the type.
    s.pt_xpm[0] = "DayXpm=\"2 2 1 1\" Colormode=0";
    s.pt_bmp[0].clear();
    EXPECT_TRUE(workbench::paintpoi(s, 0, k_bg).question);
    // No palette: one colour line a pixel, in row order.
    s.pt_xpm[0] = "DayXpm=\"2 1 0 1\" Colormode=0";
    s.pt_col[0] = "\"#FF0000\"\r\n\"#00FF00\"\r\n";
    EXPECT_EQ(row_of(workbench::paintpoi(s, 0, k_bg), 0, 0, 2), "FFFF0000 FF00FF00 ");
    EXPECT_TRUE(s.loadrep.empty()) << s.loadrep;
}

TEST(IconPainter, GarbageColumnsPaintEmptyWithOneReportLine) {
    model::Store s;
    model::procredim(s, model::k_polygons, 1);
    model::procredim(s, model::k_lines, 1);
    model::procredim(s, model::k_points, 1);
    s.pg_n = s.ln_n = s.pt_n = 1;
    s.pg_typ[0] = "0x0100";
    s.pg_mode[0] = 8;
    s.ln_mode[0] = 8 | 0;
    s.pt_typ[0] = "02F00";
    const std::string garbage("\x01\xff\"q c #12\"\r\n\xfe", 14);
    s.pg_col[0] = s.ln_col[0] = s.pt_col[0] = garbage;
    s.pt_xpm[0] = "DayXpm=\"2 2 1 1\"";
    s.pt_bmp[0] = "\x01\x02\r\n";
    EXPECT_TRUE(workbench::paintpgn(s, 0, k_bg).empty());
    EXPECT_TRUE(workbench::paintline(s, 0, k_bg).empty());
    EXPECT_TRUE(workbench::paintpoi(s, 0, k_bg).empty());
    EXPECT_EQ(report_lines(s), 3u) << s.loadrep;

    // Readable colours, rows of stray symbols: the stray pixels stay background.
    s.loadrep.clear();
    s.pt_col[0] = "\"$ c #FF0000\"";
    const Raster stray = workbench::paintpoi(s, 0, k_bg);
    ASSERT_EQ(stray.w, 2);
    EXPECT_EQ(row_of(stray, 0, 0, 2) + row_of(stray, 1, 0, 1), "12345678 12345678 12345678 ");
    EXPECT_EQ(s.loadrep, "02F00 icon pixels without a colour\r\n");

    s.pt_xpm[0] = "DayXpm=\"zz";
    s.loadrep.clear();
    EXPECT_TRUE(workbench::paintpoi(s, 0, k_bg).empty());
    EXPECT_EQ(report_lines(s), 1u);
    EXPECT_TRUE(workbench::paint_element(s, 7, 0, k_bg).empty());
    EXPECT_TRUE(workbench::paintpgn(s, 5, k_bg).empty());
}

// Columns of random bytes mixed with the pieces of real ones: every painter
// and every cell size returns a whole raster or an empty one.
TEST(IconPainter, RandomColumnBytesNeverCrash) {
    std::mt19937 rng(7);
    const std::string pieces = "\"$%&'01# none alpha=15 c \r\nXpm=\"3 2 3 1\"ABCDEFabcdef";
    const auto junk = [&](unsigned most) {
        std::string t(rng() % most, ' ');
        for (char& c : t) c = rng() % 3 ? pieces[rng() % pieces.size()] : static_cast<char>(rng());
        return t;
    };
    for (int round = 0; round < 3000; ++round) {
        model::Store s;
        for (int cls : {model::k_polygons, model::k_lines, model::k_points}) model::procredim(s, cls, 1);
        s.pg_col[0] = junk(80), s.pg_bmp[0] = junk(200), s.pg_mode[0] = static_cast<uint8_t>(rng());
        s.ln_col[0] = junk(80), s.ln_bmp[0] = junk(200), s.ln_mode[0] = static_cast<uint8_t>(rng());
        s.ln_wid[0] = static_cast<int16_t>(rng()), s.ln_bord[0] = static_cast<int16_t>(rng());
        s.pt_xpm[0] = "DayXpm=\"" + std::to_string(rng() % 20) + " " + std::to_string(rng() % 20) + " 40 " +
                      std::to_string(rng() % 3) + "\"" + junk(8);
        s.pt_col[0] = junk(300), s.pt_bmp[0] = junk(400), s.pt_nbmp[0] = junk(400);
        s.pt_nncol[0] = static_cast<int16_t>(rng() % 70);
        for (int cls = 0; cls < 5; ++cls)
            for (bool night : {false, true}) {
                const Raster r = workbench::paint_cell(s, cls, 0, static_cast<int>(rng() % 50), k_bg, night);
                ASSERT_EQ(r.px.size(), static_cast<size_t>(r.w) * static_cast<size_t>(r.h));
            }
    }
}

TEST(IconPainter, CellRepeatsTilesCentresRowsAndFitsPictures) {
    using workbench::IconFit;
    const auto icon = [](int w, int h, IconFit fit) {
        Raster r;
        r.w = w;
        r.h = h;
        r.fit = fit;
        for (uint32_t k = 1; k <= static_cast<uint32_t>(w * h); ++k) r.px.push_back(k);
        return r;
    };
    const Raster t = workbench::fit_cell(icon(2, 2, IconFit::tile), 5, k_bg);  // scale 2, repeated
    EXPECT_EQ(row_of(t, 0, 0, 5) + row_of(t, 4, 0, 1), "00000001 00000001 00000002 00000002 00000001 00000001 ");
    const Raster l = workbench::fit_cell(icon(2, 1, IconFit::rows), 5, k_bg);  // scale 2, rows 1 and 2
    EXPECT_EQ(row_of(l, 0, 0, 1) + row_of(l, 1, 4, 1) + row_of(l, 3, 0, 1), "12345678 00000001 12345678 ");
    const Raster c = workbench::fit_cell(icon(3, 2, IconFit::picture), 7, k_bg);  // scale 2 at (0, 1)
    EXPECT_EQ(row_of(c, 0, 0, 1) + row_of(c, 1, 0, 7), "12345678 00000001 00000001 00000002 00000002 00000003 00000003 12345678 ");
    const Raster shrunk = workbench::fit_cell(icon(3, 2, IconFit::picture), 2, k_bg);  // one row of two
    EXPECT_EQ(row_of(shrunk, 0, 0, 2) + row_of(shrunk, 1, 0, 2), "00000001 00000002 12345678 12345678 ");
    EXPECT_EQ(workbench::fit_cell(Raster{}, 3, k_bg).px, std::vector<uint32_t>(9, k_bg));
}

TEST(IconPainter, BundledSamplePaintsItsKnownPixels) {
    model::Store s;
    platform::ScriptedPrompt ui;
    decode_bytes(s, ui, read_bytes(source_dir() + "/data/samples/sample.typ"));
    auto polygon = [&s](const char* type) {
        for (int32_t k = 0; k < s.pg_n; ++k)
            if (s.pg_typ[static_cast<size_t>(k)] == type) return k;
        return -1;
    };
    auto point = [&s](const char* type) {
        for (int32_t k = 0; k < s.pt_n; ++k)
            if (s.pt_typ[static_cast<size_t>(k)] == type) return k;
        return -1;
    };
    // Forest: a tree crown from x 3 in row 2 on #ADD8A0, at night on #12301A.
    const int32_t forest = polygon("0x5000");
    ASSERT_GE(forest, 0);
    EXPECT_EQ(row_of(workbench::paintpgn(s, forest, k_bg), 2, 2, 3), "FFADD8A0 FF7FB86E FF7FB86E ");
    EXPECT_EQ(row_of(workbench::paintpgn(s, forest, k_bg, true), 2, 2, 3), "FF12301A FF24502A FF24502A ");
    // Scrub: transparent between the bushes by day, dark at night.
    const int32_t scrub = polygon("0x4F00");
    ASSERT_GE(scrub, 0);
    EXPECT_EQ(row_of(workbench::paintpgn(s, scrub, k_bg), 2, 1, 2), "12345678 FF6FA35A ");
    EXPECT_EQ(row_of(workbench::paintpgn(s, scrub, k_bg, true), 2, 1, 2), "FF16261A FF3A5A30 ");

    // The restaurant's corner is transparent; the viewpoint has two characters a pixel.
    const Raster restaurant = workbench::paintpoi(s, point("02A00"), k_bg);
    ASSERT_EQ(restaurant.w * 100 + restaurant.h, 1616);
    EXPECT_EQ(row_of(restaurant, 0, 0, 2), "12345678 FFC8741E ");
    const Raster view = workbench::paintpoi(s, point("05200"), k_bg);
    ASSERT_EQ(view.w * 100 + view.h, 1616);
    EXPECT_EQ(row_of(view, 1, 0, 2), "FF4A3220 FF2F6FC0 ");
    EXPECT_EQ(row_of(workbench::paintpoi(s, point("02F0B"), k_bg, true), 0, 0, 2), "FF0A1A33 FF0A1A33 ");
    // The cafe's background has alpha 15, its steam alpha 8: a cell shows only 15 as transparent.
    EXPECT_EQ(row_of(workbench::paintpoi(s, point("02A0E"), k_bg), 1, 3, 2), "12345678 FF8896A8 ");
}

// Width and height as the element's Xpm head states them.
bool head_size(const std::string& xpm, int& w, int& h) {
    const size_t q = xpm.find('"');
    return q != std::string::npos && std::sscanf(xpm.c_str() + q + 1, "%d %d", &w, &h) == 2;
}

TEST(IconPainter, CorpusElementsPaintAtTheirDeclaredSize) {
    const std::vector<std::string> files = files_with(corpus_dir() + "/typ", ".typ");
    if (files.empty()) GTEST_SKIP() << "no corpus";
    for (const std::string& path : files) {
        model::Store s;
        platform::ScriptedPrompt ui;
        decode_bytes(s, ui, read_bytes(path));
        const std::string before = s.loadrep;
        for (int32_t k = 0; k < s.pg_n; ++k) {
            for (bool night : {false, true}) {
                const Raster r = workbench::paintpgn(s, k, k_bg, night);
                EXPECT_EQ(r.w * 100 + r.h, 3232) << path << " polygon " << s.pg_typ[static_cast<size_t>(k)];
            }
        }
        for (int32_t k = 0; k < s.ln_n + s.ln_nact; ++k) {
            const auto r = static_cast<size_t>(k);
            int w = 0, h = 0;
            ASSERT_TRUE(head_size(s.ln_xpm[r], w, h)) << path;
            if (h == 0) h = 2 * s.ln_bord[r] + s.ln_wid[r];
            for (bool night : {false, true}) {
                const Raster p = workbench::paintline(s, k, k_bg, night);
                EXPECT_EQ(p.w * 1000 + p.h, h == 0 ? 0 : 32 * 1000 + h) << path << " line " << k;
            }
        }
        for (int32_t k = 0; k < s.pt_n + s.pt_nx; ++k) {
            const auto r = static_cast<size_t>(k);
            int w = 0, h = 0;
            ASSERT_TRUE(head_size(s.pt_xpm[r], w, h)) << path;
            for (bool night : {false, true}) {
                const Raster p = workbench::paintpoi(s, k, k_bg, night);
                if (p.empty()) {  // only the heads of pictures that were never there
                    EXPECT_TRUE(w * h <= 1 && !p.question) << path << " point " << s.pt_typ[r];
                    continue;
                }
                EXPECT_EQ(p.w * 1000 + p.h, w * 1000 + h) << path << " point " << s.pt_typ[r];
            }
        }
        EXPECT_EQ(s.loadrep, before) << path;
    }
}

}  // namespace

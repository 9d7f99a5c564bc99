#include "support/large_projects.h"

#include <string>

#include "platform/clock.h"
#include "platform/prompt.h"
#include "support/sample_builder.h"
#include "typ/decoder.h"
#include "typ/encoder.h"
#include "workbench/type_key.h"

namespace korvex::samples {

namespace {

// About 5.5 kB of TYP a point: this many bytes make 20,000 elements.
constexpr int64_t k_large_target = 112 * 1000 * 1000;

}  // namespace

model::Store& large_project() {
    static model::Store s = [] {
        model::Store built;
        build_large(built, k_large_target);
        return built;
    }();
    return s;
}

const model::Store& element_ops_project() {
    static const model::Store store = [] {
        model::Store s;
        new_project(s, "9999", 156);
        // Types 0x01 .. 0x7f, then 0x100 on, each with every subtype; those
        // a TYP file gives a level have one of nine.
        for (int i = 0; i < k_ops_polygons; ++i) {
            PolygonSpec p;
            p.type = i < 127 * 32 ? 1 + i / 32 : 0x100 + (i - 127 * 32) / 32;
            p.subtype = i % 32;
            p.colours = {"#40A040"};
            p.labels = {{0x04, "Area " + std::to_string(i)}};
            add_polygon(s, p);
            const std::string code = workbench::drw_code(p.type << 8 | p.subtype);
            if (p.type >= 0x100 || p.subtype == 0) s.drwlist += " " + code + "," + std::to_string(1 + i % 9);
        }
        for (int i = 0; i < k_ops_lines; ++i) {
            LineSpec l;
            l.type = i < 47 * 32 ? 1 + i / 32 : 0x100 + (i - 47 * 32) / 32;
            l.subtype = i % 32;
            l.colours = {"#202020", "#FFFFFF"};
            l.labels = {{0x04, "Road " + std::to_string(i)}};
            add_line(s, l);
        }
        for (int i = 0; i < k_ops_points; ++i) {
            PointSpec p;
            p.type = 1 + i / 32;
            p.subtype = i % 32;
            p.colours = 2 + i % 6;
            p.seed = static_cast<unsigned>(i + 1);
            p.labels = {{0x04, "Point " + std::to_string(i)}};
            add_point(s, p);
        }
        platform::QuietPrompt ui;
        const platform::FixedClock clock({2026, 1, 2, 3, 4, 5});
        typ::save_typ(s, ui, clock, false);
        model::Store back;
        typ::open_typ_bytes(back, ui, s.curf, "/bench/large.typ");
        return back;
    }();
    return store;
}

}  // namespace korvex::samples

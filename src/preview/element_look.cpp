// An element's look for the preview: the grid's painters give the pictures
// (with a transparent background, so that what lies below shows through),
// and the look is taken apart into what the window draws.
#include "preview/element_look.h"

#include <algorithm>

#include "platform/codepage.h"
#include "typ/curf_access.h"
#include "typ/draw_order.h"
#include "typ/encoding.h"
#include "workbench/cell_label.h"
#include "workbench/colour_table.h"
#include "workbench/icon_painter.h"
#include "workbench/type_key.h"

namespace korvex::preview {

namespace {

// The painters' background: transparent, which no painted colour is (they
// are all opaque).
constexpr uint32_t k_clear = 0;
constexpr int k_alpha_steps = 15;  // "alpha=" runs from 0 (opaque) to 15 (clear)

bool all_same(const Raster& r) {
    return std::all_of(r.px.begin(), r.px.end(), [&](uint32_t p) { return p == r.px.front(); });
}

// The colour table whose pixels paintpoi drew: the night one when it drew the
// night picture.
workbench::ColourTable point_table(const model::Store& s, size_t r, bool night) {
    const std::string& col = s.pt_col[r];
    const bool two = s.pt_ncol[r] >= model::cpp_limit;
    workbench::ColourTable day = workbench::read_colour_table(col, two ? 2 : 1);
    if (!night || s.pt_nbmp[r].empty() || day.next == std::string_view::npos) return day;
    workbench::ColourTable nt = workbench::read_colour_table(
        std::string_view(col).substr(day.next), s.pt_nncol[r] >= model::cpp_limit ? 2 : 1);
    return nt.entries.empty() || nt.bad ? day : nt;
}

// Partial opacity ("alpha=" 1 to 14) onto the painted picture: the painter
// shows such colours opaque, as the grid does.
void apply_opacity(const model::Store& s, size_t r, bool night, Raster& pic) {
    if (s.pt_mode[r] != 2) return;
    const workbench::ColourTable t = point_table(s, r, night);
    // Opaque colour to the same with its alpha, in an open-addressed table:
    // a picture of many colours has as many pixels to look up as it has.
    constexpr size_t k_slots = 1024;  // more than twice the most colours a point has
    std::vector<std::pair<uint32_t, uint32_t>> table(k_slots, {0u, 0u});
    const auto slot_of = [](uint32_t argb) { return (argb * 2654435761u) >> 22; };
    size_t used = 0;
    for (const workbench::ColourEntry& e : t.entries) {
        // A table longer than any picture uses (bad input) keeps a free slot.
        if (e.none || e.alpha <= 0 || e.alpha >= k_alpha_steps || used == k_slots / 2) continue;
        const uint32_t opaque = 0xFF000000u | e.rgb;
        size_t k = slot_of(opaque);
        while (table[k].first != 0 && table[k].first != opaque) k = (k + 1) % k_slots;
        if (table[k].first == opaque) continue;  // the first of two equal colours counts
        const auto a = static_cast<uint32_t>(255 - e.alpha * 255 / k_alpha_steps);
        table[k] = {opaque, (a << 24) | e.rgb};
        ++used;
    }
    if (used == 0) return;
    for (uint32_t& p : pic.px) {
        if (p >> 24 != 0xFF) continue;
        for (size_t k = slot_of(p); table[k].first != 0; k = (k + 1) % k_slots)
            if (table[k].first == p) {
                p = table[k].second;
                break;
            }
    }
}

std::string type_label(int32_t code) { return scene_type_text(code); }

}  // namespace

LookCache::LookCache(model::Store& s, const DrawOptions& options) : s_(s), options_(options) {
    for (const typ::DrawToken& t : typ::parse_drwlist(s.drwlist)) levels_.emplace(t.code, t.level);
    polygons_.resize(static_cast<size_t>(std::max(0, s.pg_n)));
    lines_.resize(static_cast<size_t>(std::max(0, s.ln_n + s.ln_nact)));
    points_.resize(static_cast<size_t>(std::max(0, s.pt_n + s.pt_nx)));
}

const ElementLook& LookCache::look(int store_class, int32_t row) {
    std::vector<ElementLook>& v = store_class == model::k_polygons ? polygons_
                                  : store_class == model::k_lines || store_class == model::k_active_lines
                                      ? lines_
                                      : points_;
    ElementLook& l = v[static_cast<size_t>(row)];
    if (!l.ready) {
        fill(l, store_class, row);
        l.ready = true;
    }
    return l;
}

bool LookCache::level(int32_t row, int& level) const {
    bool can_have = false;
    const std::string code = typ::polygon_drw_code(s_, row, can_have);
    const auto it = can_have ? levels_.find(code) : levels_.end();
    level = it != levels_.end() ? it->second : 0;
    return it != levels_.end();
}

void LookCache::fill(ElementLook& l, int store_class, int32_t row) {
    const auto r = static_cast<size_t>(row);
    const bool night = options_.night;
    if (store_class == model::k_polygons) {
        l.has_level = level(row, l.level);
        Raster tile = workbench::paintpgn(s_, row, k_clear, night);
        if (!tile.empty() && all_same(tile)) {
            l.solid = true;
            l.colour = tile.px.front();
        } else if (!tile.empty()) {
            l.raster = std::make_shared<const Raster>(std::move(tile));
        } else {
            l.solid = true;  // unreadable colours: nothing to fill with
        }
    } else if (store_class == model::k_lines || store_class == model::k_active_lines) {
        Raster rows = workbench::paintline(s_, row, k_clear, night);
        l.bitmap = (s_.ln_mode[r] >> 3) > 0;
        l.oriented = typ::contains_caseless(s_.ln_txt[r], "useorientation=y");
        if (l.bitmap) {
            if (!rows.empty()) l.raster = std::make_shared<const Raster>(std::move(rows));
        } else if (!rows.empty()) {
            // Rows of the border, then of the line, then of the border again.
            l.border = std::clamp<int>(s_.ln_bord[r], 0, rows.h / 2);
            l.width = rows.h - 2 * l.border;
            l.border_colour = l.border ? rows.at(0, 0) : 0;
            l.fill = l.width ? rows.at(0, l.border) : 0;
        }
    } else {
        Raster pic = workbench::paintpoi(s_, row, k_clear, night);
        if (!pic.empty()) {
            apply_opacity(s_, r, night, pic);
            l.raster = std::make_shared<const Raster>(std::move(pic));
        }
    }

    const std::string& section = workbench::section_text(s_, store_class, row);
    l.no_label = !read_font_style(section, l.style);
    l.has_label_colour = read_label_colour(section, night, l.label_colour);
    const std::string bytes = choose_label(section, options_.language);
    if (bytes.empty()) {
        l.label = type_label(workbench::row_type_code(s_, store_class, row));
    } else {
        // The strings are bytes of the project's code page (UTF-8 in a 65001 project).
        l.label = s_.codepage == typ::k_utf8 ? bytes
                                              : platform::wide_to_bytes(platform::bytes_to_wide(bytes, s_.codepage),
                                                                        typ::k_utf8);
    }
}

}  // namespace korvex::preview

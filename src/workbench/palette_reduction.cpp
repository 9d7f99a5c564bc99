#include "workbench/palette_reduction.h"

#include "model/nearest_colour.h"
#include "platform/files.h"
#include "text/palette_file.h"
#include "typ/curf_access.h"
#include "workbench/batch_frame.h"
#include "workbench/colour_line_hex.h"
#include "workbench/message_ids.h"

namespace korvex::workbench {

namespace {

uint32_t swap_red_blue(uint32_t c) { return (c >> 16 & 0xFF) | (c & 0xFF00) | (c & 0xFF) << 16; }

int colour_line_count(const std::string& text) {
    int n = 0;
    for_each_colour_line(text, [&](uint32_t, std::string_view) { ++n; });
    return n;
}

// The colour column and the element's own text of a row of the class.
struct ColourColumns {
    std::string* col = nullptr;
    std::string* txt = nullptr;
};

ColourColumns columns_of(model::Store& s, int cls, int32_t row) {
    const auto r = static_cast<size_t>(row);
    switch (cls) {
    case model::k_polygons: return {&s.pg_col[r], &s.pg_txt[r]};
    case model::k_lines:
    case model::k_active_lines: return {&s.ln_col[r], &s.ln_txt[r]};
    default: return {&s.pt_col[r], &s.pt_txt[r]};
    }
}

}  // namespace

std::string edpal_file_name(int entry) {
    switch (entry) {
    case k_pal_bw: return "bw.tpal";
    case k_pal_256: return "256.tpal";
    case k_pal_64: return "64.tpal";
    case k_pal_16: return "16.tpal";
    default: return {};
    }
}

std::string find_palette(const std::vector<std::string>& folders, const std::string& name) {
    for (const std::string& f : folders) {
        if (f.empty()) continue;
        const std::string path = f + "/" + name;
        if (platform::file_exists(path)) return path;
    }
    return {};
}

const std::vector<std::string>& custom_palette_filter() {
    static const std::vector<std::string> filter = {"Korvex Palette files (*.tpal", "*.tpal"};
    return filter;
}

bool keeps_black(int entry, size_t palette_size, int colour_count) {
    return entry == k_pal_custom && palette_size < static_cast<size_t>(colour_count);
}

namespace {

std::string nearest_colour_lines(const std::string& text, const std::vector<uint32_t>& palette,
                                 const model::NearestColour& nearest, bool keep_black) {
    return map_colour_lines(
        text, [&](uint32_t rgb) { return swap_red_blue(palette[static_cast<size_t>(nearest(swap_red_blue(rgb)))]); },
        [&](std::string_view line) {
            return !keep_black || line.substr(colour_digits_at(line), 6) != "000000";
        });
}

}  // namespace

std::string palette_colour_lines(const std::string& text, const std::vector<uint32_t>& palette, bool keep_black) {
    if (palette.empty()) return text;
    return nearest_colour_lines(text, palette, model::NearestColour(palette), keep_black);
}

bool edpal(model::Store& s, const Browser& b, platform::Prompt& ui, const integration::Messages& m,
           platform::FileDialog& dialogs, const EdpalRequest& r) {
    if (b.cls() == model::k_extra_points) return false;
    std::string path;
    if (r.entry == k_pal_custom) {
        path = dialogs.open_file("Palette", custom_palette_filter(), r.start);
        if (path.empty()) return false;
    } else {
        const std::string name = edpal_file_name(r.entry);
        if (name.empty()) return false;
        path = find_palette(r.folders, name);
        if (path.empty()) {
            ui.message(m.get_msg(m_cannot_find) + name);
            return false;
        }
    }
    const std::optional<std::vector<uint32_t>> palette = text::read_tpal(path);
    if (!palette || palette->empty()) {
        ui.message(m.get_msg(m_cannot_find) + path);
        return false;
    }
    std::vector<int32_t> rows;
    if (!batch_selection(s, b, ui, m, r.all, rows)) return false;
    if (!confirm_no_undo(s, ui, m)) return false;

    const model::NearestColour nearest(*palette);
    const bool points = b.cls() == model::k_points;
    bool changed = false;
    for (size_t k = 0; k < rows.size(); ++k) {
        ui.progress(static_cast<int>((k + 1) * 100 / rows.size()));
        ColourColumns c = columns_of(s, b.cls(), rows[k]);
        if (points && typ::contains_caseless(*c.col, "alpha")) continue;
        const bool black = keeps_black(r.entry, palette->size(), colour_line_count(*c.col));
        std::string col = nearest_colour_lines(*c.col, *palette, nearest, black);
        if (col != *c.col) {
            *c.col = std::move(col);
            *c.txt = nearest_colour_lines(*c.txt, *palette, nearest, black);
            changed = true;
        }
    }
    ui.progress(0);  // the window's bar shows only while a tool runs
    if (changed) s.dirty = true;
    return changed;
}

}  // namespace korvex::workbench

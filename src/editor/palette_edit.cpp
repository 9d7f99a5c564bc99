#include "editor/palette_edit.h"

#include <algorithm>

#include "editor/canvas.h"
#include "editor/palette_file.h"
#include "model/store.h"

namespace korvex::editor {

std::string getcurcol(const Palette& p) {
    std::string out;
    const int n = p.ncols();
    for (int i = 1; i <= n; ++i) {
        out += '"';
        if (n < model::cpp_limit) {
            out += static_cast<char>(i + 35);
        } else {
            out += static_cast<char>((i - 1) / 16 + 36);
            out += static_cast<char>((i - 1) % 16 + 36);
        }
        out += "\tc #" + hex6(p.colour(i)) + "\"\r\n";
    }
    return out;
}

int add_colour(EditorSession& e, platform::Prompt& ui, uint32_t default1, uint32_t default2, bool opacity_panel) {
    if (e.fn013() || e.is_group()) {
        ui.message("Only two colours allowed.");
        return 0;
    }
    if (opacity_panel) {
        ui.message("With Opacity (colormode 32) only 'pink opacity tools' can be used.");
        return 0;
    }
    if (e.ncols() >= k_max_colours) {
        ui.message("Maximum Colours = 254");
        return 0;
    }
    uint32_t colour = rgb(245, 245, 245);
    for (int level = 255; level >= 0; --level) {
        const uint32_t grey = rgb(static_cast<uint32_t>(level), static_cast<uint32_t>(level), static_cast<uint32_t>(level));
        if (e.palette.first_of(grey) == 0) {
            colour = grey;
            break;
        }
    }
    const int entry = e.ncols() + 1;
    if (entry < 3) colour = entry == 1 ? default1 : default2;
    e.palette.colours.push_back(colour & 0xFFFFFF);
    if (!e.palette.alpha.empty()) e.palette.alpha.push_back(0);
    e.curcol = entry;
    e.eddirty = true;
    e.changes1 |= ch_ncols;
    painticon(e);
    start_history(e);
    return entry;
}

namespace {

// The entry a deleted entry's pixels take: the nearest remaining colour by
// the sum of squared channel differences, the lower entry at a tie; the
// index counts after the deleted entry has moved out.
int removecol_heir(const std::vector<uint32_t>& colours, int gone) {
    const uint32_t c = colours[static_cast<size_t>(gone)];
    int best = 0;
    long best_d = -1;
    for (int i = 0; i < static_cast<int>(colours.size()); ++i) {
        if (i == gone) continue;
        const uint32_t o = colours[static_cast<size_t>(i)];
        long d = 0;
        for (int shift : {0, 8, 16}) {
            const long diff = static_cast<long>((c >> shift) & 0xFF) - static_cast<long>((o >> shift) & 0xFF);
            d += diff * diff;
        }
        if (best_d < 0 || d < best_d) {
            best_d = d;
            best = i < gone ? i : i - 1;
        }
    }
    return best;
}

}  // namespace

bool removecol(EditorSession& e, int entry, platform::Prompt& ui, bool opacity_panel) {
    if (e.truecolour) {
        ui.message("Convert to 256 Colours first.");
        return false;
    }
    if (opacity_panel) {
        ui.message("Untick Opacity first.");
        return false;
    }
    if (!e.palette.valid(entry) || e.ncols() < 2) return false;
    const int gone = entry - 1;
    const int heir = removecol_heir(e.palette.colours, gone);  // index after the move down
    for (uint8_t& v : e.pixels.values()) {
        if (v == gone)
            v = static_cast<uint8_t>(heir);
        else if (v > gone)
            --v;
    }
    e.palette.colours.erase(e.palette.colours.begin() + gone);
    if (static_cast<size_t>(gone) < e.palette.alpha.size()) e.palette.alpha.erase(e.palette.alpha.begin() + gone);
    e.curcol = -1;
    e.eddirty = true;
    e.changes1 |= ch_ncols;
    painticon(e);
    start_history(e);
    return true;
}

int trimcols(EditorSession& e, platform::Prompt& ui, bool opacity_panel) {
    if (e.is_group() || opacity_panel || e.truecolour) return 0;
    if (e.ncols() < 2) {
        ui.message("No colours to trim");
        return 0;
    }
    // The colours in use, in the order met from the last row up; the
    // transparent entry, when in use, keeps its place among them.
    const uint32_t marker = e.transparentcolour;
    Palette kept;
    bool marker_used = false;
    for (int y = e.height - 1; y >= 0; --y)
        for (int x = 0; x < e.width; ++x) {
            const uint32_t c = e.palette.colour(e.pixels.at(x, y) + 1);
            if (c == marker) {
                marker_used = true;
                continue;
            }
            if (kept.first_of(c) == 0) kept.colours.push_back(c);
        }
    if (marker_used) {
        const int at = std::min(e.palette.first_transparent(marker) - 1, kept.ncols());
        kept.colours.insert(kept.colours.begin() + at, marker);
    }
    const int removed = e.ncols() - kept.ncols();
    if (removed == 0) {
        ui.message("No usused colours found.");
        return 0;
    }
    if (!e.palette.alpha.empty()) {
        for (uint32_t c : kept.colours) kept.alpha.push_back(e.palette.alpha[static_cast<size_t>(e.palette.first_of(c) - 1)]);
    }
    std::vector<int> new_index(static_cast<size_t>(e.ncols()), 0);
    for (int i = 1; i <= e.ncols(); ++i) new_index[static_cast<size_t>(i - 1)] = std::max(kept.first_of(e.palette.colour(i)) - 1, 0);
    for (uint8_t& v : e.pixels.values()) v = static_cast<uint8_t>(v < new_index.size() ? new_index[v] : 0);
    e.palette = kept;
    e.curcol = -1;
    e.eddirty = true;
    e.changes1 |= ch_ncols;
    painticon(e);
    start_history(e);
    ui.message("Unused colours have been removed.");
    return removed;
}

void fixcols(Palette& p) {
    if (p.ncols() < 2) return;
    for (size_t j = 1; j < p.colours.size(); ++j) {
        for (;;) {
            bool clash = false;
            for (size_t i = 0; i < j; ++i)
                if (p.colours[i] == p.colours[j]) clash = true;
            if (!clash) break;
            p.colours[j] = p.colours[j] >= 0xFFFFFF ? p.colours[j] - 1 : p.colours[j] + 1;
        }
    }
}

bool chk1col(EditorSession& e, platform::Prompt& ui) {
    if (!e.palette.has_duplicates()) return true;
    if (!ui.yes_no("Fix identical colours?")) return false;
    save_curpalette(e);
    fixcols(e.palette);
    e.changes1 |= ch_colour;
    e.eddirty = true;
    painticon(e);
    return true;
}

void switch_transparent_marker(EditorSession& e, uint32_t marker) {
    const uint32_t old = e.transparentcolour;
    if (old == marker) return;
    for (Palette* p : {&e.palette, &e.nightpal})
        for (uint32_t& c : p->colours)
            if (c == old) c = marker;
    e.transparentcolour = marker;
    if (e.truecolour) {
        for (uint32_t& c : e.surface.pixels())
            if (c == old) c = marker;
    } else {
        painticon(e);
    }
}

namespace {

// Colours compare as their numbers (red in the low byte), as the
// threshold's bounds are numbers of that order.
int64_t brightness(uint32_t c) { return c & 0xFFFFFF; }

}  // namespace

void twocols(EditorSession& e) {
    if (e.ncols() < 2) return;
    int64_t lo = 1LL << 30, hi = -1;
    for (uint32_t c : e.surface.pixels()) {
        // White and near black stay out of the range.
        if (c == 0xFFFFFF || c < 1052689) continue;
        lo = std::min(lo, brightness(c));
        hi = std::max(hi, brightness(c));
    }
    if (hi < 0) lo = hi = 0;
    const int64_t mid = (lo + hi) / 2;
    for (int y = 0; y < e.height; ++y)
        for (int x = 0; x < e.width; ++x) e.pixels.set(x, y, brightness(e.surface.at(x, y)) > mid ? 1 : 0);
    e.eddirty = true;
    painticon(e);
    e.undo.store(undo_picture(e));
}

std::string transparency_refusal(const EditorSession& e, int entry) {
    const int cls = e.store_class();
    if (e.palette.first_transparent(e.transparentcolour) != 0) return "Transparency colour exists.";
    if (cls == 0 && entry == 1) return "First palette colour cannot be transparent.";
    if ((cls == 0 || cls == 1 || cls == 3) && entry != 2) return "Make 2nd palette colour transparent then click 'reverse'.";
    return {};
}

bool ch7transp(const EditorSession& e, platform::Prompt& ui) {
    if (e.palette.first_transparent(e.transparentcolour) != 0) return true;
    ui.message("One colour needs to become tansparent. Please select.");
    return false;
}

}  // namespace korvex::editor

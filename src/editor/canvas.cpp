#include "editor/canvas.h"

#include <string>
#include <unordered_map>

#include "editor/point_pictures.h"
#include "model/store.h"

namespace korvex::editor {

void resize_picture(EditorSession& e, int width, int height) {
    e.width = std::max(width, 0);
    e.height = std::max(height, 0);
    e.pixels = PixelGrid(e.width, e.height);
    e.opacity = PixelGrid(e.width, e.height);
    e.surface = Raster(e.width, e.height);
    start_history(e);
}

void painticon(EditorSession& e) {
    if (e.truecolour) {
        e.pixeltext.clear();
        return;
    }
    if (e.surface.width() != e.width || e.surface.height() != e.height) e.surface = Raster(e.width, e.height);
    const std::vector<uint8_t>& idx = e.pixels.values();
    std::vector<uint32_t>& px = e.surface.pixels();
    for (size_t i = 0; i < idx.size(); ++i) px[i] = e.palette.colour(idx[i] + 1);
    e.pixeltext = pixel_rows(e);
}

void translate(EditorSession& e) {
    if (!e.truecolour && e.ncols() > 0) {
        // Each colour met is looked up once: the first entry whose decimal
        // digits begin with the colour's digits. Equal entries resolve to the
        // lower one, and so does a colour that is the head of an earlier
        // entry's digits (the look-up has always been a text search).
        std::vector<std::string> digits;
        digits.reserve(static_cast<size_t>(e.ncols()));
        for (int i = 1; i <= e.ncols(); ++i) digits.push_back(std::to_string(e.palette.colour(i)));
        std::unordered_map<uint32_t, int> entry;
        entry.reserve(static_cast<size_t>(e.ncols()) * 2);
        const auto lookup = [&](uint32_t colour) {
            const auto hit = entry.find(colour);
            if (hit != entry.end()) return hit->second;
            const std::string d = std::to_string(colour);
            int found = 0;
            for (size_t i = 0; i < digits.size() && found == 0; ++i)
                if (digits[i].compare(0, d.size(), d) == 0) found = static_cast<int>(i) + 1;
            entry.emplace(colour, found);
            return found;
        };
        const bool follow_previous = e.curclass < 4;
        std::vector<uint32_t>& px = e.surface.pixels();
        std::vector<uint8_t>& idx = e.pixels.values();
        std::vector<uint8_t>& op = e.opacity.values();
        int previous = 0;
        uint32_t last_colour = 0xFFFFFFFF;
        int last_entry = 0;
        for (size_t i = 0; i < px.size() && i < idx.size(); ++i) {
            int found;
            if (px[i] == last_colour) {
                found = last_entry;
            } else {
                found = lookup(px[i]);
                last_colour = px[i];
                last_entry = found;
            }
            if (found == 0 && follow_previous) found = previous;
            if (found == 0) found = 1;
            previous = found;
            // In opacity mode a pixel drawn in another colour takes that colour's level.
            if (e.alpha && idx[i] != found - 1 && i < op.size()) op[i] = static_cast<uint8_t>(level_of(e.palette, found, e.transparentcolour));
            idx[i] = static_cast<uint8_t>(found - 1);
            px[i] = e.palette.colour(found);
        }
        e.pixeltext = pixel_rows(e);
    }
    e.undo.store(undo_picture(e));
    e.lastpalok = false;
}

namespace {

// Head of a history level: width, height, true colour, the palette's
// colours and alphas, each list after its length.
constexpr size_t k_undo_head_fixed = 3;

void show_level(EditorSession& e, const std::vector<uint32_t>& level) {
    if (level.size() < k_undo_head_fixed + 2) return;
    size_t at = 0;
    const int w = static_cast<int>(level[at++]);
    const int h = static_cast<int>(level[at++]);
    const bool truecolour = level[at++] != 0;
    const size_t ncols = level[at++];
    if (at + ncols >= level.size()) return;
    std::vector<uint32_t> colours(level.begin() + static_cast<long>(at), level.begin() + static_cast<long>(at + ncols));
    at += ncols;
    const size_t nalpha = level[at++];
    if (at + nalpha > level.size()) return;
    std::vector<uint8_t> alpha;
    for (size_t i = 0; i < nalpha; ++i) alpha.push_back(static_cast<uint8_t>(level[at + i]));
    at += nalpha;
    const size_t plane = static_cast<size_t>(std::max(w, 0)) * static_cast<size_t>(std::max(h, 0));
    if (level.size() - at != plane) return;
    if (w != e.width || h != e.height) {
        e.width = w;
        e.height = h;
        e.pixels = PixelGrid(w, h);
        e.opacity = PixelGrid(w, h);
        e.surface = Raster(w, h);
    }
    if (e.palette.colours != colours || e.palette.alpha != alpha) {
        e.palette.colours = std::move(colours);
        e.palette.alpha = std::move(alpha);
        if (!e.palette.valid(e.curcol)) e.curcol = -1;
        if (!e.palette.valid(e.curcol2)) e.curcol2 = -1;
    }
    e.truecolour = truecolour;
    if (e.truecolour) {
        e.surface.pixels().assign(level.begin() + static_cast<long>(at), level.end());
        e.pixeltext.clear();
        return;
    }
    std::vector<uint8_t>& idx = e.pixels.values();
    for (size_t i = 0; i < idx.size(); ++i) idx[i] = static_cast<uint8_t>(level[at + i]);
    painticon(e);
}

}  // namespace

std::vector<uint32_t> undo_picture(const EditorSession& e) {
    std::vector<uint32_t> level = {static_cast<uint32_t>(std::max(e.width, 0)), static_cast<uint32_t>(std::max(e.height, 0)),
                                   e.truecolour ? 1u : 0u, static_cast<uint32_t>(e.palette.colours.size())};
    level.insert(level.end(), e.palette.colours.begin(), e.palette.colours.end());
    level.push_back(static_cast<uint32_t>(e.palette.alpha.size()));
    level.insert(level.end(), e.palette.alpha.begin(), e.palette.alpha.end());
    if (e.truecolour) {
        level.insert(level.end(), e.surface.pixels().begin(), e.surface.pixels().end());
    } else {
        const std::vector<uint8_t>& idx = e.pixels.values();
        level.insert(level.end(), idx.begin(), idx.end());
    }
    return level;
}

void start_history(EditorSession& e) { e.undo.reset(undo_picture(e)); }

void show_undo_level(EditorSession& e) { show_level(e, e.undo.current()); }

bool undo_step(EditorSession& e) {
    std::vector<uint32_t> picture;
    if (!e.undo.undo(picture)) return false;
    show_level(e, picture);
    return true;
}

bool redo_step(EditorSession& e) {
    std::vector<uint32_t> picture;
    if (!e.undo.redo(picture)) return false;
    show_level(e, picture);
    return true;
}

std::string point_symbol(int n, int ncols) {
    if (ncols < model::cpp_limit) return std::string(1, static_cast<char>(n + 36));
    return {static_cast<char>(n / 16 + 36), static_cast<char>(n % 16 + 36)};
}

std::string pixel_rows(const EditorSession& e) {
    if (e.truecolour) return {};
    const bool point = e.store_class() == model::k_points || e.store_class() == model::k_extra_points;
    const int cpp = point && e.ncols() >= model::cpp_limit ? 2 : 1;
    std::string out;
    out.reserve(static_cast<size_t>(e.height) * static_cast<size_t>(e.width * cpp + 2));
    for (int y = 0; y < e.height; ++y) {
        for (int x = 0; x < e.width; ++x) {
            const int n = e.pixels.at(x, y);
            if (!point)
                out += static_cast<char>('0' + (n & 1));
            else
                out += point_symbol(n, e.ncols());
        }
        out += "\r\n";
    }
    return out;
}

bool clearicon(EditorSession& e, platform::Prompt& ui, bool opacity_panel) {
    if (e.width <= 0 || e.height <= 0) {
        ui.message("No bitmap to clear.");
        return false;
    }
    if (opacity_panel) {
        ui.message("Untick Colormode32.");
        return false;
    }
    if (!ui.yes_no("This clears the whole icon using current colour. Are you sure?")) return false;
    if (e.truecolour) {
        e.surface.fill(e.pen_colour);
    } else {
        if (!e.palette.valid(e.curcol)) return false;
        e.pixels.fill(static_cast<uint8_t>(e.curcol - 1));
        painticon(e);
    }
    start_history(e);
    e.eddirty = true;
    return true;
}

void save_curpalette(EditorSession& e) {
    e.saved_palette = e.palette;
    e.saved_pixels = e.pixels;
    e.lastpalok = true;
}

bool load_lastpalette(EditorSession& e) {
    if (!e.lastpalok) return false;
    // The picture kept with the palette comes back with it; its indexes
    // name the kept palette's entries, so the history starts from it.
    const bool with_picture = !e.saved_pixels.empty() && e.saved_pixels.width() == e.pixels.width() &&
                              e.saved_pixels.height() == e.pixels.height();
    if (!with_picture && e.saved_palette.ncols() != e.palette.ncols()) return false;
    const bool picture_differs = with_picture && e.saved_pixels != e.pixels;
    std::swap(e.saved_palette, e.palette);
    if (with_picture) std::swap(e.saved_pixels, e.pixels);
    painticon(e);
    if (picture_differs) start_history(e);
    e.eddirty = true;
    return true;
}

bool convert_to_bitmap(EditorSession& e, platform::Prompt& ui) {
    const int cls = e.store_class();
    if (!e.solid || (cls != 1 && cls != 3)) return !e.solid;
    const int h = 2 * e.border + e.lwidth;
    if (h < 1 || h > 32) return false;
    if (!ui.yes_no("Using this tool you will not be able to alter border or line heights.\r\nContinue?")) return false;
    return line_bitmap(e);
}

bool line_bitmap(EditorSession& e) {
    const int h = 2 * e.border + e.lwidth;
    if (!e.solid || h < 1 || h > 32) return false;
    if (e.palette.ncols() < 2) e.palette.colours.resize(2, e.transparentcolour);
    e.solid = false;
    resize_picture(e, 32, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < 32; ++x) e.pixels.set(x, y, y < e.border || y >= e.border + e.lwidth ? 1 : 0);
    painticon(e);
    start_history(e);
    e.eddirty = true;
    e.changes1 |= ch_mode;
    return true;
}

void crop_picture(EditorSession& e, const Rect& frame) {
    if (frame.empty()) return;
    const Raster part = cut_out(e.surface, frame);
    PixelGrid idx(frame.w, frame.h), op(frame.w, frame.h);
    for (int y = 0; y < frame.h; ++y)
        for (int x = 0; x < frame.w; ++x) {
            idx.set(x, y, e.pixels.at(frame.x + x, frame.y + y));
            op.set(x, y, e.opacity.at(frame.x + x, frame.y + y));
        }
    e.width = frame.w;
    e.height = frame.h;
    e.width_box = frame.w;
    e.height_box = frame.h;
    e.pixels = std::move(idx);
    e.opacity = std::move(op);
    e.surface = part;
    painticon(e);
    start_history(e);
    e.eddirty = true;
    e.changes1 |= ch_dimensions;
}

}  // namespace korvex::editor

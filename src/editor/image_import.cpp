#include "editor/image_import.h"

#include <algorithm>
#include <climits>
#include <unordered_set>

#include "editor/canvas.h"
#include "editor/image_raster.h"
#include "editor/night_option.h"
#include "editor/palette_edit.h"
#include "editor/point_size.h"
#include "platform/files.h"

namespace korvex::editor {

namespace {

bool ends_with_png(const std::string& path) {
    if (path.size() < 4) return false;
    std::string tail = path.substr(path.size() - 4);
    std::transform(tail.begin(), tail.end(), tail.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return tail == ".png";
}

// A picture pixel laid over a background colour. The magenta of a saved
// icon's bitmap comes back as the transparent marker.
uint32_t over(uint32_t argb, uint32_t background, uint32_t marker) {
    const uint32_t a = argb >> 24;
    if (a == 0) return background;
    uint32_t c = colour_of_argb(argb);
    if (a < 0xFF) {
        const auto mix = [a](uint32_t fg, uint32_t bg) { return (fg * a + bg * (0xFF - a) + 0x7F) / 0xFF; };
        c = rgb(mix(red_of(c), red_of(background)), mix(green_of(c), green_of(background)), mix(blue_of(c), blue_of(background)));
    }
    return c == k_transparent_magenta ? marker : c;
}

// The point whole-bitmap picture takes as its size.
void resizeold(EditorSession& e, int width, int height) {
    resize_picture(e, width, height);
    e.width_box = width;
    e.height_box = height;
    e.changes1 |= ch_dimensions;
}

// Nearest palette colour: the smallest sum of squared channel differences,
// the lower entry on a tie.
uint32_t nearest_entry_colour(const Palette& p, uint32_t c) {
    uint32_t best = p.colour(1);
    long best_d = LONG_MAX;
    for (uint32_t q : p.colours) {
        const long dr = static_cast<long>(red_of(c)) - static_cast<long>(red_of(q));
        const long dg = static_cast<long>(green_of(c)) - static_cast<long>(green_of(q));
        const long db = static_cast<long>(blue_of(c)) - static_cast<long>(blue_of(q));
        const long d = dr * dr + dg * dg + db * db;
        if (d < best_d) best_d = d, best = q;
    }
    return best;
}

// The size a point takes from a picture over its whole bitmap (pasteinto_p4's rule).
void pasted_size(const EditorSession& e, const platform::Image& picture, int& w, int& h) {
    w = e.width;
    h = e.height;
    if (picture.width <= e.width && picture.height <= e.height) return;
    if (picture.width <= k_max_point_side && picture.height <= k_max_point_side) {
        w = picture.width;
        h = picture.height;
    } else if (e.width <= 0 || e.height <= 0) {
        w = h = k_max_point_side;
        fit_proportions(picture.width, picture.height, w, h);
    }
}

// A picture that gives a point with a night picture another size: the
// night cannot follow, so check4up decides (the night goes, or the paste).
bool night_allows_paste(EditorSession& e, platform::Prompt& ui, const platform::Image& picture) {
    if (!is_point(e) || (!e.has_night_bitmap && e.bmpmode == 0 && !e.newbmp)) return true;
    int w = 0, h = 0;
    pasted_size(e, picture, w, h);
    if (w == e.width && h == e.height) return true;
    return check4up(e, ui);
}

// A floating layer is stamped before the frame goes: what was pasted stays.
void drop_selection(ToolEngine& tools) {
    tools.commit_layer();
    tools.escape();
}

}  // namespace

std::vector<std::string> import_filters() {
    return {"All Image Files (*.png;*.gif;*.bmp;*.jpg;*.jpeg;*.ico;*.wmf;)",
            "PNG (*.png) ",
            "JPG (*.jpg)",
            "JPEG (*.jpeg)",
            "GIF (*.gif)",
            " Bitmap files (*.bmp)",
            "XPM (*.xpm)"};
}

bool chkbmp(EditorSession& e, platform::Prompt& ui) {
    if (!e.solid) return true;
    if (!ui.yes_no("Convert to Bitmap?")) return false;
    const int cls = e.store_class();
    if (cls == 1 || cls == 3) return line_bitmap(e);
    if (e.palette.ncols() < 2) e.palette.colours.resize(2, e.transparentcolour);
    e.solid = false;
    resize_picture(e, 32, 32);
    painticon(e);
    e.eddirty = true;
    e.changes1 |= ch_mode;
    return true;
}

bool import_file(EditorSession& e, ToolEngine& tools, platform::Prompt& ui, platform::FileDialog& dialogs,
                 platform::ImageCodec& codec, std::string& pastedfile, const PasteOptions& opt) {
    if (!chkbmp(e, ui)) return false;
    const std::string path = dialogs.open_file("Import Image", import_filters(), pastedfile);
    if (path.empty() || !platform::file_exists(path)) return false;
    pastedfile = path;
    const platform::ImageRead r = codec.read(path);
    if (!r.ok || r.image.width <= 0 || r.image.height <= 0) {
        if (ends_with_png(path))
            ui.message(platform::file_exists(path) ? "Failed to load the file. May not be valid PNG format or pre-Vista operating system."
                                                   : "File does not exist");
        else
            ui.message(path + "\r\n" + r.error);
        return false;
    }
    return import_picture(e, tools, ui, r.image, opt);
}

bool import_picture(EditorSession& e, ToolEngine& tools, platform::Prompt& ui, const platform::Image& picture,
                    const PasteOptions& opt) {
    if (picture.width <= 0 || picture.height <= 0) return false;
    if (tools.has_frame() && e.curclass == 2) {
        // A point's selection takes the picture; the rest of the bitmap stays.
        if (!paste_into_selection(e, tools, ui, picture, opt)) return false;
        return true;
    }
    if (tools.has_frame()) drop_selection(tools);
    const bool to_rgb = is_point(e) && !e.truecolour;
    if (to_rgb && !ui.yes_no("Convert to RGB.\r\nThis action can not be undone.\r\nContinue?")) return false;
    // An extra point's night cannot outlive a change of its colours.
    if (e.curclass == 4 && !resetnight(e, ui)) return false;
    if (!night_allows_paste(e, ui, picture)) return false;
    // The surface holds the picture's colours already.
    if (to_rgb) e.truecolour = true;
    // The resize on the way starts a history; the import is one step of the one before.
    const UndoHistory history = e.undo;
    savebmp(e, 0);
    if (!pasteinto_p4(e, ui, picture)) return false;
    const ReduceOutcome reduced = pasteloadedpic(e, picture, opt);
    if (reduced.before > 0) ui.status(reduce_status(reduced));
    if (e.curclass == k_line_group) ch7transp(e, ui);
    if (!e.truecolour) e.curcol = -1;
    e.eddirty = true;
    e.changes2 |= ch_imported;
    e.undo = history;
    e.undo.store(undo_picture(e));  // a step of its own: Undo brings the picture before back
    savebmp(e, 1);
    return true;
}

bool pasteinto_p4(EditorSession& e, platform::Prompt& ui, const platform::Image& picture) {
    const int pw = picture.width, ph = picture.height;
    if (pw <= 0 || ph <= 0) return false;
    if (pw <= e.width && ph <= e.height) return true;
    if (is_point(e)) {
        if (pw <= k_max_point_side && ph <= k_max_point_side) {
            resizeold(e, pw, ph);
        } else if (e.width <= 0 || e.height <= 0) {
            int w = k_max_point_side, h = k_max_point_side;
            fit_proportions(pw, ph, w, h);
            resizeold(e, w, h);
        }
        // A larger picture shrinks to the point's size.
        return true;
    }
    if (ph > e.height) {
        ui.message("Height of current icon must be at least " + std::to_string(ph));
        return false;
    }
    ui.message("Width of current icon too small!");
    return false;
}

ReduceOutcome pasteloadedpic(EditorSession& e, const platform::Image& picture, const PasteOptions& opt) {
    if (e.width <= 0 || e.height <= 0) return {};
    const bool transparent = is_point(e) || e.palette.first_transparent(e.transparentcolour) != 0;
    const uint32_t background = transparent ? e.transparentcolour : 0xFFFFFF;
    int pw = e.width, ph = e.height;
    if (opt.keep_proportions) fit_proportions(picture.width, picture.height, pw, ph);
    const platform::Image fitted = stretch_image(picture, pw, ph);
    Raster canvas(e.width, e.height, background);
    for (int y = 0; y < ph; ++y)
        for (int x = 0; x < pw; ++x)
            canvas.set(x, y, over(fitted.argb[static_cast<size_t>(y) * static_cast<size_t>(pw) + static_cast<size_t>(x)], background,
                                  e.transparentcolour));
    e.surface = std::move(canvas);
    if (e.truecolour) return {};
    e.changes1 |= ch_ncols;
    return is_point(e) ? histogram(e, ReduceMode::full) : histogram(e, ReduceMode::paste, 2);
}

bool paste_into_selection(EditorSession& e, ToolEngine& tools, platform::Prompt& ui, const platform::Image& picture,
                          const PasteOptions& opt) {
    if (!tools.has_frame()) {
        ui.message("Select part of your bitmap");
        return false;
    }
    const Rect f = tools.frame();
    int pw = f.w, ph = f.h;
    if (opt.keep_proportions) fit_proportions(picture.width, picture.height, pw, ph);
    const platform::Image fitted = stretch_image(picture, pw, ph);
    FloatingLayer layer{Raster(pw, ph), f.x, f.y};
    for (int y = 0; y < ph; ++y)
        for (int x = 0; x < pw; ++x)
            layer.picture.set(x, y, over(fitted.argb[static_cast<size_t>(y) * static_cast<size_t>(pw) + static_cast<size_t>(x)],
                                         e.surface.at(f.x + x, f.y + y), e.transparentcolour));
    if (!e.truecolour) {
        std::vector<uint32_t> fresh;
        std::unordered_set<uint32_t> seen;
        for (uint32_t c : layer.picture.pixels())
            if (e.palette.first_of(c) == 0 && seen.insert(c).second) fresh.push_back(c);
        const bool fixed = e.fn013() || e.is_group();
        const int room = fixed ? e.ncols() : k_max_colours - e.ncols();
        if (static_cast<int>(fresh.size()) > room) {
            ui.message("Too many colours\r\nSelect whole area instead.");
            return false;
        }
        if (fixed) {
            for (uint32_t& c : layer.picture.pixels()) c = nearest_entry_colour(e.palette, c);
        } else if (!fresh.empty()) {
            for (uint32_t c : fresh) {
                e.palette.colours.push_back(c);
                if (!e.palette.alpha.empty()) e.palette.alpha.push_back(k_no_alpha);
            }
            e.changes1 |= ch_ncols;
        }
    }
    tools.float_layer(std::move(layer));
    e.eddirty = true;
    e.changes2 |= ch_imported;
    return true;
}

bool pastebut(EditorSession& e, ToolEngine& tools, platform::Prompt& ui, platform::Clipboard& clipboard,
              bool into_selection, const PasteOptions& opt) {
    const std::optional<platform::ClipImage> picture = clipboard.image();
    if (!picture || picture->width <= 0 || picture->height <= 0 ||
        picture->argb.size() < static_cast<size_t>(picture->width) * static_cast<size_t>(picture->height)) {
        ui.message("Clipboard contains no picture.");
        return false;
    }
    if (into_selection || tools.has_frame()) return paste_into_selection(e, tools, ui, *picture, opt);
    if (!chkbmp(e, ui)) return false;
    if (!night_allows_paste(e, ui, *picture)) return false;
    const UndoHistory history = e.undo;
    savebmp(e, 0);
    if (!pasteinto_p4(e, ui, *picture)) return false;
    const ReduceOutcome reduced = pasteloadedpic(e, *picture, opt);
    if (reduced.before > 0) ui.status(reduce_status(reduced));
    e.eddirty = true;
    e.changes2 |= ch_imported;
    // A paste is one step of the history, its palette and size with it.
    e.undo = history;
    e.undo.store(undo_picture(e));
    savebmp(e, 1);
    return true;
}

bool copyp4(ToolEngine& tools, const EditorSession& e, platform::Prompt& ui, platform::Clipboard* clipboard, bool cut) {
    if (!tools.has_frame()) {
        ui.message("Please CTRL/SHIFT or CTRL A select.");
        return false;
    }
    if (!tools.copy_selection(cut)) return false;
    if (clipboard) {
        // Transparent pixels leave as transparent ones.
        const Raster& r = tools.layer().picture;
        platform::Image img{r.width(), r.height(), {}};
        img.argb.reserve(r.pixels().size());
        for (uint32_t c : r.pixels()) img.argb.push_back(c == e.transparentcolour ? argb_of_colour(k_transparent_magenta, 0) : argb_of_colour(c));
        clipboard->set_image(img);
    }
    return true;
}

}  // namespace korvex::editor

#include "editor/bitmap_save.h"

#include <algorithm>

#include "editor/image_raster.h"
#include "platform/files.h"

namespace korvex::editor {

namespace {

bool has_bmp_extension(const std::string& path) {
    if (path.size() < 4) return false;
    std::string tail = path.substr(path.size() - 4);
    std::transform(tail.begin(), tail.end(), tail.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return tail == ".bmp";
}

// A palette icon's data is its pixels; the surface may show a figure in
// progress.
uint32_t colour_at(const EditorSession& e, int x, int y) {
    return e.truecolour ? e.surface.at(x, y) : e.palette.colour(e.pixels.at(x, y) + 1);
}

}  // namespace

platform::Image bitmap_image(const EditorSession& e) {
    platform::Image img{e.width, e.height, {}};
    img.argb.reserve(static_cast<size_t>(std::max(e.width, 0)) * static_cast<size_t>(std::max(e.height, 0)));
    for (int y = 0; y < e.height; ++y)
        for (int x = 0; x < e.width; ++x) {
            uint32_t c = colour_at(e, x, y);
            if (c == e.transparentcolour) c = k_transparent_magenta;
            img.argb.push_back(argb_of_colour(c));
        }
    return img;
}

bool savepoi(const EditorSession& e, platform::Prompt& ui, platform::FileDialog& dialogs, platform::ImageCodec& codec,
             const std::string& proposed) {
    if (e.width <= 0 || e.height <= 0) return false;
    const platform::Image img = bitmap_image(e);
    bool transparent = false;
    for (int y = 0; y < e.height && !transparent; ++y)
        for (int x = 0; x < e.width && !transparent; ++x)
            transparent = colour_at(e, x, y) == e.transparentcolour;
    if (transparent) ui.message("Caution. Transparency will show as magenta.");
    std::string path = dialogs.save_file("Save as Bitmap", {"Bitmap files (*.bmp)"}, proposed);
    if (path.empty()) return false;
    if (!has_bmp_extension(path)) path += ".bmp";
    if (platform::file_exists(path) && !ui.yes_no("File exists.\r\nReplace this file?")) return false;
    std::string why;
    if (!codec.write_bmp(path, img, &why)) {
        ui.message(path + "\r\n" + why);
        return false;
    }
    return true;
}

}  // namespace korvex::editor

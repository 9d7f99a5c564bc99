#include "workbench/palette_panel.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "platform/files.h"
#include "text/palette_file.h"
#include "workbench/colour_line_hex.h"
#include "workbench/data_folder.h"
#include "workbench/message_ids.h"

namespace korvex::workbench {

namespace {

// A count as typed: digits only, else no count.
int typed_count(const std::string& text) {
    std::string t = text;
    while (!t.empty() && t.back() == ' ') t.pop_back();
    while (!t.empty() && t.front() == ' ') t.erase(0, 1);
    if (t.empty() || t.size() > 6 || !std::all_of(t.begin(), t.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return -1;
    return std::stoi(t);
}

// Channel k (0 red, 1 green, 2 blue) of a red-low colour.
int channel(uint32_t colour, int k) { return static_cast<int>(colour >> (8 * k) & 0xFF); }

}  // namespace

std::optional<std::vector<uint32_t>> two_colour_palette(platform::Prompt& ui, const integration::Messages& m,
                                                        const std::string& colour1, const std::string& colour2,
                                                        const std::string& count) {
    const int n = typed_count(count);
    if (n < k_palette_steps_min || n > k_palette_steps_max) {
        ui.message(m.get_msg(m_colours) + "  >2 <128");
        return std::nullopt;
    }
    uint32_t from = 0, to = 0;
    if (!text::from_hex(colour1, from) || !text::from_hex(colour2, to)) {
        ui.message("Not a valid hex");
        return std::nullopt;
    }
    std::vector<uint32_t> out;
    out.reserve(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        uint32_t c = 0;
        for (int k = 0; k < 3; ++k) {
            const double v = channel(from, k) + (channel(to, k) - channel(from, k)) * static_cast<double>(i) / (n - 1);
            c |= static_cast<uint32_t>(std::clamp(static_cast<int>(std::lround(v)), 0, 255)) << (8 * k);
        }
        out.push_back(c);
    }
    return out;
}

std::vector<uint32_t> typ_palette(const model::Store& s) {
    std::vector<uint32_t> out;
    std::unordered_set<uint32_t> seen;
    auto take = [&](const std::vector<std::string>& column, int32_t count) {
        for (int32_t r = 0; r < count && static_cast<size_t>(r) < column.size(); ++r)
            for_each_colour_line(column[static_cast<size_t>(r)], [&](uint32_t rgb, std::string_view) {
                if (!seen.insert(rgb).second) return;
                // 0xRRGGBB to red-low.
                out.push_back((rgb >> 16 & 0xFF) | (rgb & 0xFF00) | (rgb & 0xFF) << 16);
            });
    };
    take(s.pg_col, s.pg_n);
    take(s.ln_col, s.ln_n + s.ln_nact);
    take(s.pt_col, s.pt_n + s.pt_nx);
    return out;
}

std::string palette_path(const std::string& data_folder, const std::string& name) {
    return text::with_tpal_extension(under(data_folder, "pal/" + name));
}

std::string save_palette(platform::Prompt& ui, const integration::Messages& m, const std::string& data_folder,
                         const std::string& name, const std::vector<uint32_t>& colours, platform::FileSystem& fs) {
    const std::string path = palette_path(data_folder, name);
    if (platform::file_exists(path) && !ui.yes_no(m.get_msg(m_replace))) return {};
    std::string why;
    if (!text::save_tpal(path, colours, &why, fs)) {
        ui.message(why);
        return {};
    }
    return path;
}

}  // namespace korvex::workbench

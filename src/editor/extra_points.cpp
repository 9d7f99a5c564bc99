#include "editor/extra_points.h"

#include "editor/point_pictures.h"

namespace korvex::editor {

namespace {

// Width and height of a head line, 0 where missing.
void head_size(const std::string& xpm, int& w, int& h) {
    w = h = 0;
    const size_t q = xpm.find('"');
    if (q == std::string::npos) return;
    const char* p = xpm.c_str() + q + 1;
    char* end = nullptr;
    w = static_cast<int>(std::strtol(p, &end, 10));
    if (end) h = static_cast<int>(std::strtol(end, nullptr, 10));
}

// The line of a picture's fault, "" when it has none.
std::string fault_of(const PointPicture& p) {
    if (p.truecolour) return p.surface.empty() ? "no day file" : "";
    if (p.palette.ncols() == 0) return " Colour total?";
    for (uint8_t v : p.pixels.values())
        if (v >= p.palette.ncols()) return " cols dont match";
    return {};
}

}  // namespace

std::vector<ExtraPointItem> extra_point_list(const model::Store& s) {
    std::vector<ExtraPointItem> out;
    for (int32_t k = 0; k < s.pt_nx; ++k) {
        const auto r = static_cast<size_t>(s.pt_n + k);
        if (r >= s.pt_xpm.size()) break;
        ExtraPointItem item;
        item.row = s.pt_n + k;
        item.name = "0x" + s.pt_typ[r];
        const std::string& lab = s.pt_lab[r];
        const size_t hash = lab.find('#');
        if (hash != std::string::npos && hash + 1 < lab.size()) item.name += " " + lab.substr(hash + 1);
        int w = 0, h = 0;
        head_size(s.pt_xpm[r], w, h);
        item.has_data = w > 0 && h > 0;
        out.push_back(std::move(item));
    }
    return out;
}

std::vector<std::string> poiextraset(const EditorSession& e, int k) {
    std::vector<std::string> out;
    const std::string day = fault_of(day_picture(e));
    if (!day.empty()) out.push_back("icon:" + std::to_string(k) + day);
    if (e.bmpmode != 0) {
        const std::string night = fault_of(night_picture(e));
        if (!night.empty()) out.push_back("icon:" + std::to_string(k) + "+N" + night);
    }
    return out;
}

bool leave_extra_point(model::Store& s, EditorSession& e, const ExtraPointItem& to, platform::Prompt& ui,
                       std::vector<std::string>& log, ApplyOutcome& applied) {
    if (to.row == e.row) return false;
    if (!to.has_data) {
        ui.message(" No data for " + to.name);
        return false;
    }
    if (e.eddirty && ui.yes_no("Wish to keep these changes?")) {
        const std::vector<std::string> lines = poiextraset(e, e.row - s.pt_n);
        ApplyOutcome out = apply(s, e, ui);
        if (!out.committed) return false;
        log.insert(log.end(), lines.begin(), lines.end());
        applied = std::move(out);
    }
    return true;
}

}  // namespace korvex::editor

#include "workbench/night_points.h"

#include "model/crlf.h"
#include "typ/curf_access.h"
#include "workbench/point_checks.h"
#include "workbench/point_section.h"

namespace korvex::workbench {

int add_nightpois(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
                  const BatchRequest& req) {
    if (b.cls() != model::k_points) {
        ui.message("Change to POINTS");
        return 0;
    }
    std::vector<int32_t> rows;
    if (!batch_start(s, b, ui, m, req.all, rows)) return 0;
    BatchReport report;
    int added = 0;
    for (const int32_t r : rows) {
        std::string why;
        if (chkcanv(s, r, why)) {
            report.add_lines(why);
            continue;
        }
        PointPicture p = read_point_picture(s, r);
        if (!typ::contains_caseless(p.key, "dayxpm")) continue;
        // The night part: the day head under its night name, the same
        // colours ("none" stays) and the same rows.
        PointPicture night = p;
        night.key = "NightXpm=";
        night.night.clear();
        p.night = picture_text(night);
        updpoicod(s, ui, r, p);
        ++added;
    }
    report.show(ui, req.data_folder, k_night_points_report, "Add Night POIs");
    if (added > 0) s.dirty = true;
    return added;
}

}  // namespace korvex::workbench

#include "model/store.h"

namespace korvex::model {

namespace {

template <typename... Cols>
void resize_all(int32_t count, Cols&... cols) {
    const size_t n = count < 0 ? 0 : static_cast<size_t>(count);
    (cols.resize(n), ...);
}

}  // namespace

void procredim(Store& s, int cls, int32_t count) {
    if (cls == k_polygons) {
        resize_all(count, s.pg_bmp, s.pg_col, s.pg_pos, s.pg_txt, s.pg_ncol, s.pg_lab, s.pg_mode,
                   s.pg_xpm, s.pg_typ, s.pg_dayc, s.pg_len);
        resize_all(count + 1, s.pg_drw);
    } else if (cls == k_lines) {
        resize_all(count, s.ln_bmp, s.ln_col, s.ln_pos, s.ln_txt, s.ln_ncol, s.ln_xpm, s.ln_mode,
                   s.ln_lab, s.ln_wid, s.ln_bord, s.ln_dayc, s.ln_code, s.ln_act, s.ln_len);
    } else if (cls == k_points) {
        resize_all(count, s.pt_col, s.pt_bmp, s.pt_nbmp, s.pt_txt, s.pt_typ, s.pt_lab, s.pt_cc,
                   s.pt_xpm, s.pt_len, s.pt_ncol, s.pt_nncol, s.pt_mode);
    }
}

void newproject(Store& s) {
    // Counts make a table empty; the columns are dropped too so that a new
    // load never sees rows of the old one.
    procredim(s, k_polygons, 0);
    procredim(s, k_lines, 0);
    procredim(s, k_points, 0);
    s.pt_n = s.pg_ni = s.ln_n = s.pg_n = 0;
    s.dirty = false;
    s.pt_nx = s.ln_nact = 0;
    s.pg_nnight = s.pt_nnight = 0;
    s.drwlist.clear();
    s.loadrep.clear();
    s.loadmsg.clear();
    s.curf.clear();
    s.from_family = false;
    s.created.clear();
    s.fid.clear();
    s.pid = "1";
    s.utf8txt = false;
    s.hdr_len = 91;
    for (auto& b : s.blocks) b.clear();
    s.walk = WalkState{};
    static const char* hex = "0123456789abcdef";
    const int def = s.opt.hdr_def < 91 ? 110 : s.opt.hdr_def;
    s.hdr_caption = std::string(" ") + hex[(def >> 4) & 15] + hex[def & 15];
    s.codepage = s.opt.list_codepage;
}

char chkl(const Store& s, int n) {
    if (n < 1 || static_cast<size_t>(n) > s.ldopts.size()) return '1';
    return s.ldopts[static_cast<size_t>(n - 1)];
}

void note_once(Store& s, const std::string& text) {
    auto& ix = s.report_index;
    if (ix.size != s.loadrep.size()) {
        ix.lines.clear();
        size_t start = 0;
        while (start < s.loadrep.size()) {
            size_t end = s.loadrep.find("\r\n", start);
            if (end == std::string::npos) end = s.loadrep.size();
            ix.lines.insert(s.loadrep.substr(start, end - start));
            start = end + 2;
        }
    }
    if (ix.lines.count(text)) return;
    if (ix.lines.size() >= k_report_limit) {
        static const std::string full = "Too many problems; the report stops here.";
        if (!ix.lines.count(full)) {
            s.loadrep += full + "\r\n";
            ix.lines.insert(full);
        }
        ix.size = s.loadrep.size();
        return;
    }
    s.loadrep += text;
    s.loadrep += "\r\n";
    ix.lines.insert(text);
    ix.size = s.loadrep.size();
}

}  // namespace korvex::model

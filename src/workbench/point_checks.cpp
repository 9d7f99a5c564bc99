#include "workbench/point_checks.h"

#include <algorithm>

#include "model/crlf.h"
#include "typ/curf_access.h"

namespace korvex::workbench {

namespace {

bool night_part(const model::Store& s, size_t row) {
    return !s.pt_nbmp[row].empty() || typ::contains_caseless(s.pt_col[row], "nightxpm") || s.pt_nncol[row] > 0;
}

// Keys of row x from pixel a (inclusive) to b (exclusive) are all key.
bool run_is(std::string_view x, std::string_view key, int a, int b) {
    const size_t k = key.size();
    for (int i = a; i < b; ++i)
        if (x.compare(static_cast<size_t>(i) * k, k, key) != 0) return false;
    return true;
}

}  // namespace

bool chkcanv(const model::Store& s, int32_t r, std::string& report) {
    const auto row = static_cast<size_t>(r);
    const std::string& type = s.pt_typ[row];
    bool excluded = false;
    auto note = [&](const char* why) {
        report += type;
        report += why;
        report += k_crlf;
        excluded = true;
    };
    std::string_view day = s.pt_col[row];
    day = day.substr(0, typ::find_caseless(day, "xpm="));
    if (typ::contains_caseless(day, "alpha")) note(" has opacity");
    if (night_part(s, row)) note(" has night bmp");
    if (s.pt_bmp[row].empty()) note(" has no bitmap");
    return excluded;
}

TrimEdges chktrbmp(const std::vector<std::string>& rows, std::string_view key, int width) {
    TrimEdges t;
    const int n = static_cast<int>(rows.size());
    const size_t k = key.size();
    if (k == 0 || width <= 0) {
        t.width_error = true;
        return t;
    }
    const size_t full = static_cast<size_t>(width) * k;
    std::vector<bool> blank(static_cast<size_t>(n));
    for (int y = 0; y < n; ++y) {
        const std::string& x = rows[static_cast<size_t>(y)];
        if (x.size() == k) {
            blank[static_cast<size_t>(y)] = x == key;
        } else if (x.size() != full) {
            t.width_error = true;
            return t;
        } else {
            blank[static_cast<size_t>(y)] = run_is(x, key, 0, width);
        }
    }
    while (t.top < n && blank[static_cast<size_t>(t.top)]) ++t.top;
    if (t.top == n) {
        t.all = true;
        t.top = t.bottom = n;
        t.left = t.right = width;
        return t;
    }
    while (blank[static_cast<size_t>(n - 1 - t.bottom)]) ++t.bottom;
    // Columns: only the rows between the blank ones decide, and a one-key
    // row is its key all the way.
    int left = width, right = width;
    for (int y = t.top; y < n - t.bottom; ++y) {
        const std::string& x = rows[static_cast<size_t>(y)];
        if (x.size() == k) {
            left = right = 0;  // a one-key row that is not blank
            break;
        }
        int l = 0;
        while (l < left && x.compare(static_cast<size_t>(l) * k, k, key) == 0) ++l;
        left = std::min(left, l);
        int rr = 0;
        while (rr < right && x.compare(static_cast<size_t>(width - 1 - rr) * k, k, key) == 0) ++rr;
        right = std::min(right, rr);
    }
    t.left = left;
    t.right = right;
    return t;
}

}  // namespace korvex::workbench

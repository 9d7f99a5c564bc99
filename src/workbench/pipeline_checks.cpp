#include "workbench/pipeline_checks.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <tuple>

#include "workbench/checks.h"
#include "workbench/draworder_check.h"
#include "workbench/label_codepage_check.h"
#include "workbench/point_limits_check.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

// The code of a type already in the one form ("0x" and five lower-case hex
// digits), -1 for any other text. Most findings arrive in that form, and a
// file can give hundreds of thousands of them.
int32_t canonical_code(std::string_view t) {
    if (t.size() != 7 || t[0] != '0' || t[1] != 'x') return -1;
    int32_t v = 0;
    for (size_t i = 2; i < 7; ++i) {
        const char c = t[i];
        const int d = c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
        if (d < 0) return -1;
        v = v * 16 + d;
    }
    return v;
}

}  // namespace

// Five fixed-width hex digits order as their values, so the type's code
// stands for its text; findings are sorted as keys and moved once.
void sort_findings(Findings& f) {
    struct Key {
        int cls;
        int32_t code;
        size_t at;
    };
    std::vector<Key> keys;
    keys.reserve(f.size());
    for (size_t i = 0; i < f.size(); ++i) keys.push_back({f[i].cls, canonical_code(f[i].type), i});
    auto rest = [](const Finding& a) { return std::tie(a.type, a.check, a.message); };
    // Merge sort: runs of findings of one element and check come in order,
    // and a quicksort meets such input at its worst.
    std::stable_sort(keys.begin(), keys.end(), [&](const Key& a, const Key& b) {
        if (a.cls != b.cls) return a.cls < b.cls;
        if (a.code != b.code) return a.code < b.code;
        return rest(f[a.at]) < rest(f[b.at]);
    });
    Findings out;
    out.reserve(f.size());
    for (const Key& k : keys) {
        Finding& x = f[k.at];
        if (!out.empty() && out.back().cls == x.cls && rest(out.back()) == rest(x)) continue;
        out.push_back(std::move(x));
    }
    f = std::move(out);
}

Findings pipeline_findings(const model::Store& s, int max_size, const std::string& dropped_draworder) {
    Findings all = consistency_findings(s);
    for (Findings more : {chk_label_codepage(s), chk_no_draworder(s), chk_draworder_duplicates(s, dropped_draworder),
                          chk_point_limits(s, max_size)})
        all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    // One form of a type for a program to match on, whatever form a check
    // took from the grid: "0x0100,2" (a polygon with its level) is "0x00100".
    for (Finding& f : all) {
        if (f.type.empty() || canonical_code(f.type) >= 0) continue;
        const int32_t code = type_code(f.type.substr(0, f.type.find(',')));
        if (code >= 0) f.type = "0x" + five_digits(code);
    }
    sort_findings(all);
    return all;
}

}  // namespace korvex::workbench

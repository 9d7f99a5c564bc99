#include "workbench/step_part.h"

#include <algorithm>

namespace korvex::workbench {

namespace {

// Strings up to this long live inside the string object.
constexpr size_t k_inline_string = 15;

}  // namespace

SmallState small_state(const model::Store& s) {
    return {s.pg_n,    s.pg_ni,       s.ln_n, s.ln_nact, s.pt_n,     s.pt_nx,   s.pg_nnight, s.pt_nnight,
            s.hdr_len, s.hdr_caption, s.fid,  s.pid,     s.codepage, s.utf8txt, s.cvcp};
}

void put_small(model::Store& s, const SmallState& v) {
    s.pg_n = v.pg_n;
    s.pg_ni = v.pg_ni;
    s.ln_n = v.ln_n;
    s.ln_nact = v.ln_nact;
    s.pt_n = v.pt_n;
    s.pt_nx = v.pt_nx;
    s.pg_nnight = v.pg_nnight;
    s.pt_nnight = v.pt_nnight;
    s.hdr_len = v.hdr_len;
    s.hdr_caption = v.hdr_caption;
    s.fid = v.fid;
    s.pid = v.pid;
    s.codepage = v.codepage;
    s.utf8txt = v.utf8txt;
    s.cvcp = v.cvcp;
}

StringEdit string_edit(const std::string& was, const std::string& now) {
    StringEdit e;
    if (was == now) return e;
    e.changed = true;
    const size_t shorter = std::min(was.size(), now.size());
    size_t front = 0;
    while (front < shorter && was[front] == now[front]) ++front;
    size_t back = 0;
    while (back < shorter - front && was[was.size() - 1 - back] == now[now.size() - 1 - back]) ++back;
    e.at = front;
    e.before = was.substr(front, was.size() - front - back);
    e.after = now.substr(front, now.size() - front - back);
    return e;
}

void apply_edit(std::string& s, const StringEdit& e, bool forward) {
    if (!e.changed) return;
    const std::string& gone = forward ? e.before : e.after;
    const std::string& put = forward ? e.after : e.before;
    if (e.at > s.size()) return;
    s.replace(e.at, gone.size(), put);
}

size_t string_bytes(const std::string& v) { return v.capacity() > k_inline_string ? v.capacity() + 1 : 0; }

size_t StepPart::bytes() const {
    size_t n = sizeof(*this) + string_bytes(drwlist.before) + string_bytes(drwlist.after) +
               string_bytes(no_level_types.before) + string_bytes(no_level_types.after);
    for (const TableChange& c : tables) n += c.bytes();
    if (small_changed)
        n += string_bytes(before.hdr_caption) + string_bytes(before.fid) + string_bytes(before.pid) +
             string_bytes(after.hdr_caption) + string_bytes(after.fid) + string_bytes(after.pid);
    for (const auto* w : {wide_before.get(), wide_after.get()}) {
        if (!w) continue;
        n += sizeof(WideState);
        for (const std::string& b : w->blocks) n += string_bytes(b);
    }
    return n;
}

void apply_part(model::Store& s, const StepPart& p, bool forward) {
    if (forward)
        for (const TableChange& c : p.tables) apply_change(s, c, true);
    else
        for (auto it = p.tables.rbegin(); it != p.tables.rend(); ++it) apply_change(s, *it, false);
    if (p.small_changed) put_small(s, forward ? p.after : p.before);
    apply_edit(s.drwlist, p.drwlist, forward);
    apply_edit(s.walk.no_level_types, p.no_level_types, forward);
    if (const WideState* w = (forward ? p.wide_after : p.wide_before).get()) {
        s.blocks = w->blocks;
        s.walk = w->walk;
    }
}

}  // namespace korvex::workbench

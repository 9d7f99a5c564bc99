// The pieces of a history step: the small state beside the rows, long
// strings as the piece that changed, and one part of a step (what changed
// against one snapshot).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/store.h"
#include "workbench/step_diff.h"

namespace korvex::workbench {

// Polygons, lines, points.
constexpr int k_row_tables = 3;

// The state beside the rows that changes come to: counters, header fields,
// code page. Small enough to copy at every step.
struct SmallState {
    int32_t pg_n = 0, pg_ni = 0, ln_n = 0, ln_nact = 0, pt_n = 0, pt_nx = 0, pg_nnight = 0, pt_nnight = 0;
    int32_t hdr_len = 0;
    std::string hdr_caption, fid, pid;
    int32_t codepage = 0;
    bool utf8txt = false;
    int cvcp = 0;
    bool operator==(const SmallState&) const = default;
    bool same_header(const SmallState& o) const {
        return hdr_len == o.hdr_len && hdr_caption == o.hdr_caption && fid == o.fid && pid == o.pid &&
               codepage == o.codepage;
    }
};

SmallState small_state(const model::Store& s);
void put_small(model::Store& s, const SmallState& v);

// A long string's change as the piece that differs: the draw-order list of
// thousands of polygons changes by one entry.
struct StringEdit {
    bool changed = false;
    size_t at = 0;
    std::string before, after;
};

StringEdit string_edit(const std::string& was, const std::string& now);
void apply_edit(std::string& s, const StringEdit& e, bool forward);

// Bytes of a string's own buffer (none while it is short enough to live inside).
size_t string_bytes(const std::string& v);

// What a whole-project change may touch beyond the rows and the small state.
struct WideState {
    std::array<std::string, 6> blocks;
    model::WalkState walk;
};

// What the current part of an open step covers.
struct StepCover {
    std::array<bool, k_row_tables> whole{};
    bool levels = false;
    bool project = false;
};

// One stretch of a step, recorded against one snapshot.
struct StepPart {
    std::vector<TableChange> tables;
    bool small_changed = false;
    SmallState before, after;
    StringEdit drwlist, no_level_types;
    std::unique_ptr<WideState> wide_before, wide_after;

    bool empty() const {
        return tables.empty() && !small_changed && !drwlist.changed && !no_level_types.changed && !wide_before;
    }
    size_t bytes() const;
};

// Takes the part back (forward false) or does it again.
void apply_part(model::Store& s, const StepPart& p, bool forward);

}  // namespace korvex::workbench

// What a change did to one table, as hunks: rows old_at .. old_at +
// before.size() - 1 of the table as it was became rows new_at .. new_at +
// after.size() - 1 of the table as it is. Rows between hunks are the same
// rows on both sides, in the same order. Hunks are in rising order.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/store.h"
#include "workbench/row_buffer.h"
#include "workbench/row_journal.h"

namespace korvex::workbench {

struct Hunk {
    int32_t old_at = 0, new_at = 0;
    RowBuffer before, after;
};

struct TableChange {
    int table = 0;
    int32_t old_rows = 0, new_rows = 0;
    std::vector<Hunk> hunks;
    size_t bytes() const;
};

// The change from what the journal followed. levels: pg_drw as the part
// began (polygons, whose levels any change may renew), else null.
TableChange diff_followed(const model::Store& s, int table, RowJournal::Table& followed,
                          const std::vector<std::string>* levels);

// The change from a copy of every row of the table: the rows the two sides
// share at the front and at the back are left out.
TableChange diff_whole(const model::Store& s, int table, const RowBuffer& was);

// Puts the table back as it was (forward false) or as it became (true).
void apply_change(model::Store& s, const TableChange& c, bool forward);

}  // namespace korvex::workbench

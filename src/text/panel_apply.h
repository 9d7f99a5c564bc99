// Applying the element-text panel: the edited text of the element on show is
// checked line by line and, when every rule holds, read into its row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::text {

using model::Store;

struct PanelApply {
    bool ok = false;
    std::string caption;        // for the status line; may hold a note on success
    int line = -1;              // the offending line of text, from 0; -1 for none
    size_t select_from = 0;     // that line's range in text
    size_t select_length = 0;
    std::string text;           // the panel text, short colour values padded
    bool changed_type = false;  // the Type= line names another, valid, type
};

// Checks panel (the panel's text) against the element on show: class cls
// (0 polygon, 1 line, 2 point, 3 active line, 4 extra point) at row, the row
// of its columns (ln_n + k for an active line, pt_n + k for an extra point).
// night checks the point's night picture instead of the day one. Message
// boxes go through ui; a refusal leaves the store as it was. On success the
// element is read again from the text and dirty is set. String lines are
// taken as the readers take them: UTF-8 while s.utf8txt, else bytes of the
// code page (convert gives the panel UTF-8; the caller turns it back).
PanelApply parsetext(Store& s, platform::Prompt& ui, const std::string& panel, int cls, int32_t row, bool night);

}  // namespace korvex::text

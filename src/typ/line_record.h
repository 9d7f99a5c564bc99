// Line records: flag | flag2 | colours (BGR) | [rows x 4 bytes] | widths |
// [labels] | [font]. The same format serves active lines.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"

namespace korvex::typ {

using model::Store;

// Decoders of one record at pos (absolute) into row n. size is the record size
// from the index (0 when unknown). The driver has set ln_code[n], ln_pos[n],
// ln_len[n], ln_mode[n] and, for an active line, ln_act[n].
void line_no_bmp(Store& s, int64_t pos, int32_t n, int flag, int32_t size);
void line_bmp(Store& s, int64_t pos, int32_t n, int flag, int32_t size);

// The type text of a line code: as for polygons, a trailing "00" cut for codes
// of 0x10000 and above.
std::string line_type_text(int32_t code);

// Record bytes of line row n (ordinary or active).
std::string encode_line_record(Store& s, int32_t n);

// Writes line data (active lines behind the others), the line index and the
// active routing index; returns the next free offset.
int64_t save_polylines(Store& s, int64_t offset);

}  // namespace korvex::typ

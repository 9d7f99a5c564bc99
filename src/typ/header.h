// The TYP header: fixed fields, header length variants, the date rule and the
// six extended blocks.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"
#include "platform/clock.h"
#include "platform/prompt.h"

namespace korvex::typ {

using model::Store;

// A colour in a record: blue, green, red.
constexpr int k_colour_bytes = 3;
// Polygon and line index records grow to 3-byte offsets above this many
// elements.
constexpr int32_t k_wide_index_count = 300;

namespace hdr {
constexpr int k_min = 91;        // plain header
constexpr int k_extra = 110;     // blocks 0 and 1
constexpr int k_blocks = 156;
constexpr int k_extra_edit = 164;
constexpr int k_active = 174;    // active routing

constexpr int year = 14, month_or_day = 16, day_or_month = 17, hour = 18, minute = 19, second = 20;
constexpr int codepage = 21;
constexpr int pt_data = 23, pt_data_len = 27;
constexpr int ln_data = 31, ln_data_len = 35;
constexpr int pg_data = 39, pg_data_len = 43;
constexpr int fid = 47, pid = 49;
constexpr int pt_index = 51, pt_recsize = 55, pt_index_len = 57;
constexpr int ln_index = 61, ln_recsize = 65, ln_index_len = 67;
constexpr int pg_index = 71, pg_recsize = 75, pg_index_len = 77;
constexpr int drw = 81, drw_recsize = 85, drw_len = 87;
constexpr int blk0 = 91, blk0_recsize = 95, blk0_len = 97, blk0_packing = 101;
constexpr int blk1 = 102, blk1_len = 106;
constexpr int unknown122 = 122;
constexpr int act_index = 164, act_recsize = 168, act_index_len = 170;
// Pointer and length offsets of blocks 0 to 5.
constexpr int block_ptr[6] = {0x5b, 0x66, 0x72, 0x82, 0x92, 0x9c};
constexpr int block_len[6] = {0x61, 0x6a, 0x76, 0x86, 0x96, 0xa0};
}  // namespace hdr

// "Created  " day month year hour:minute, read by the decoder's date rule.
std::string created_line(Store& s);

// Writes the date bytes as the encoder does (day at 16, month at 17).
void write_date(Store& s, const platform::Stamp& now);

// The header length display: a blank and lower-case hex digits.
std::string header_caption(int32_t len);
int32_t caption_value(const std::string& caption);

// Where the standard data ends; marks extended data in s.walk.
int32_t end_of_standard_data(Store& s);

// Reads the six blocks into s.blocks, applying a change of the header length
// display. False after "Select Header.".
bool get_blocks(Store& s, platform::Prompt& ui);

// Chooses the header length for a save; false when the user refused.
bool choose_header_length(Store& s, platform::Prompt& ui, bool tofile);

}  // namespace korvex::typ

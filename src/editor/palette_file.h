// Palette files (.tpal) as the editor uses them: the reader and writer live
// with the other text formats, where the workbench's palette tools reach
// them too.
#pragma once

#include "text/palette_file.h"

namespace korvex::editor {

using text::from_hex;
using text::hex6;
using text::parse_tpal;
using text::read_tpal;
using text::save_tpal;
using text::tpal_fields;
using text::tpal_text;
using text::with_tpal_extension;

}  // namespace korvex::editor

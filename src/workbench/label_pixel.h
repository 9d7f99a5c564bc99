// The POI label pixel: a pixel of colour "$" at the end of a row a quarter
// down a transparent point, where the device takes the label's place from;
// and its removal.
#pragma once

#include <cstdint>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/batch_frame.h"
#include "workbench/browser.h"

namespace korvex::workbench {

// Where Add POI Label Pixel writes the points it passed over.
inline constexpr const char* k_label_pixel_report = "system/adpxl";

// adpixel: for each selected transparent point whose last column is free,
// the last pixel of row (rows / 4) becomes "$" ("$$" at two characters a
// pixel). "Pixels added:" and the count end it. Returns the count.
int adpixel(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
            const BatchRequest& req);

// rempxl: a selected point whose rows end in the transparent key but for one
// that ends in "$" has that pixel made transparent again. "Pixels removed : "
// and the count end it. Returns the count.
int rempxl(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
           const BatchRequest& req);

}  // namespace korvex::workbench

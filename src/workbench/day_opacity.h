// Colours > Add POI Day Opacity and Replace POI Day Opacity (conv_32).
// Add gives every colour of the selected points an opacity value (a
// transparent colour stays fully transparent, "alpha=15"); Replace takes
// opacity away again: a colour at "=15" becomes "none", the others lose
// their value, and the mode goes back to 0, or 16 with a "none" left.
// Night pictures take the same walk.
#pragma once

#include <string>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/browser.h"
#include "workbench/point_section.h"

namespace korvex::workbench {

// The alpha value of a fully transparent colour.
constexpr int k_alpha_clear = 15;

// The night part of a picture (as PointPicture::night holds it) as a
// picture of its own, and back with picture_text.
PointPicture night_picture(const std::string& night);

// One picture: Add with value (0..15), else Replace. True when it changed.
bool add_opacity(PointPicture& p, int value);
bool replace_opacity(PointPicture& p);

struct Conv32Request {
    bool add = false;
    int value = 0;     // Add's opacity, 0..15
    bool all = false;  // the selected-elements box
};

// Only with points in view, else "Select Points". Then the selection and the
// no-undo prompts of the batch tools; each selected point with a day
// picture (no 0 in its head) is converted, its night picture too. Returns
// the number of points changed (dirty set when above 0); the progress bar
// counts the points.
int conv_32(model::Store& s, const Browser& b, platform::Prompt& ui, const integration::Messages& m,
            const Conv32Request& r);

}  // namespace korvex::workbench

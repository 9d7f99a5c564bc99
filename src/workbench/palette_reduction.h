// Colours > Convert to Black & White / 256 / 64 / 16 / Custom Palette
// (edpal): every colour line of the selected elements takes the nearest
// colour of a palette file; keys, "none" and the pixels stay.
#pragma once

#include <string>
#include <vector>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/file_dialog.h"
#include "platform/prompt.h"
#include "workbench/browser.h"

namespace korvex::workbench {

// The entries of the menu, in order.
enum PaletteEntry : int { k_pal_bw = 0, k_pal_256 = 1, k_pal_64 = 2, k_pal_16 = 3, k_pal_custom = 4 };

// "bw.tpal", "256.tpal", "64.tpal", "16.tpal"; "" for the custom entry.
std::string edpal_file_name(int entry);

// The first folder that holds name, as a path; "" when none does.
std::string find_palette(const std::vector<std::string>& folders, const std::string& name);

// The filter of the custom palette's open dialog.
const std::vector<std::string>& custom_palette_filter();

struct EdpalRequest {
    int entry = k_pal_256;
    bool all = false;                  // the selected-elements box
    std::vector<std::string> folders;  // where the bundled files are looked for, in order
    std::string start;                 // where the custom dialog opens
};

// The palette as the tool applies it to an element that has colour_count
// colour lines: whether its black lines stay black. A custom palette
// smaller than the element leaves black alone; every other palette holds
// black and maps it to itself anyway.
bool keeps_black(int entry, size_t palette_size, int colour_count);

// Refused in Extra Points. The palette file (or the one the dialog gives;
// a cancelled dialog stops quietly) must be readable: "Cannot find " +
// name. Then the selection and the no-undo prompts of the batch tools. Each
// selected element that is not marked "alpha" has every colour line's
// colour replaced by the nearest palette colour. True when the tables
// changed (dirty is set; the caller rebuilds the grid).
bool edpal(model::Store& s, const Browser& b, platform::Prompt& ui, const integration::Messages& m,
           platform::FileDialog& dialogs, const EdpalRequest& r);

// The replacement itself on one column text, for the tool and its tests:
// palette red-low, as read from a .tpal.
std::string palette_colour_lines(const std::string& text, const std::vector<uint32_t>& palette, bool keep_black);

}  // namespace korvex::workbench

// What the user does to the draw order: set levels, insert a layer, give
// selected polygons levels, add or edit a separate entry, remove redundant
// entries and duplicates. Every refusal says its message and changes nothing;
// every change sorts the list, renews pg_drw and sets dirty.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/browser.h"
#include "workbench/history.h"

namespace korvex::workbench {

// One selected thing whose level changes: a polygon row, and in the layer
// view the entry its cell shows. entry -1 means every entry of the row's type
// (the icon view, where a cell is a polygon and not one of its levels).
struct LevelTarget {
    int32_t row = -1;
    int32_t entry = -1;
};

// get_mdrw: the selection as targets, the primary list first, then what the
// secondary list adds; the current cell when both are empty. Placeholders of
// the layer view are targets too (row -1), blanks are not.
std::vector<LevelTarget> get_mdrw(const Browser& b, const model::Store& s);

// The limit of the level lists of the dialogs: max(99, polygon count).
int level_limit(const model::Store& s);

// Label3's right click: may the view switch to the draw orders? "Polygons
// have no draworder" when there are no polygons or no draw order text.
bool can_show_draworders(const model::Store& s, platform::Prompt& ui, const integration::Messages& m);

// mlev: the targets go to level (0: out of the draw order). "No data."
// without polygons; nothing selected or another class in view does nothing.
// True when something changed.
bool mlev(model::Store& s, platform::Prompt& ui, const integration::Messages& m, int curclass,
          const std::vector<LevelTarget>& targets, int level, History* history = nullptr);

// mdrawl(0), Insert Lower Layer below the layer of the clicked cell: every
// entry of that level or higher rises by one, and the targets take the
// freed level. "Layer must be > 0 " for the no-level group.
bool insert_lower_layer(model::Store& s, platform::Prompt& ui, const integration::Messages& m, int layer,
                        const std::vector<LevelTarget>& targets, History* history = nullptr);

// The two options of "Draworders for Selected Polygons".
enum class DrawselMode { none, each, same };

// The refusals of Give Selected Polygons Draworder before its dialog opens:
// "Please Select Polygons", "Please select." with the selection hint.
bool drawsel_allowed(platform::Prompt& ui, const integration::Messages& m, int curclass,
                     const std::vector<LevelTarget>& targets);
// drawsel: with each, the level rises by one from start for each target in
// turn; with same, all take start. Each target's type ends with that one level.
bool drawsel(model::Store& s, platform::Prompt& ui, const integration::Messages& m, int curclass,
             const std::vector<LevelTarget>& targets, DrawselMode mode, int start, History* history = nullptr);

// Add Separate Draworder (edpol): the dialog's fields as typed.
struct EdpolRequest {
    std::string type;               // hex, "" is "00"
    std::string subtype;            // hex, "" is "00"
    std::string level;              // decimal
    bool allow_duplicate = false;   // a type that has a level gets another
    int32_t edit_entry = -1;        // the view_entries() index being edited, -1 for a new entry
};
bool edpol(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const EdpolRequest& r, History* history = nullptr);

// One line of the redundant dialog.
struct RedundantItem {
    int32_t entry = -1;      // view_entries() index
    std::string caption;     // type + " (d" + level + ")"
};
// Mode 0: entries whose type no polygon has, but the background 0x4B.
std::vector<RedundantItem> redundant_entries(const model::Store& s);
// Mode 1: the entries of the targets, which are to lose their draw order.
std::vector<RedundantItem> target_entries(const model::Store& s, const std::vector<LevelTarget>& targets);
// redund: the list the dialog opens with (mode 0 the redundant entries,
// mode 1 those of the targets); "None found." when it would be empty.
std::vector<RedundantItem> redund(const model::Store& s, platform::Prompt& ui, const integration::Messages& m,
                                  int mode, const std::vector<LevelTarget>& targets = {});
// OK of the dialog: the ticked entries leave the draw order. "Not Found."
// when none is ticked.
bool remove_entries(model::Store& s, platform::Prompt& ui, const integration::Messages& m,
                    const std::vector<int32_t>& entries, History* history = nullptr);

// find_duplicates from the menu: reports, removes later entries of a type
// that an earlier one has, and renews the polygons' levels.
bool check_duplicates(model::Store& s, platform::Prompt& ui, History* history = nullptr);

}  // namespace korvex::workbench

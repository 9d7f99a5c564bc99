// Unused colours: colour lines that no pixel of the element uses, polygon
// and line pairs that name the same colour twice, the repair that drops
// them, and the joint warning after a load.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/finding.h"

namespace korvex::workbench {

// What checkcols found in one class: the report lines (CR LF ended, without
// the heading) and the same as findings ("unused-colours").
struct ColourCheck {
    std::string lines;
    Findings findings;
    bool empty() const { return lines.empty(); }
};

// Every row of class 0, 1 or 2 (active lines and extra points ride along
// with their class). A row that only needs a rewrite of equal colours counts
// as a finding too.
ColourCheck unused_colour_check(const model::Store& s, int cls);

// The findings of unused_colour_check without its report lines: what a
// program reading the findings needs, and a large file has many.
Findings unused_colour_findings(const model::Store& s, int cls);

// checkcols(class, fix): the report, headed "UNUSED COLOURS: " + class name;
// "" when nothing was found.
std::string checkcols(const model::Store& s, int cls);

// redun(class): drops unused colour lines and merges equal pairs, keeping
// what every element draws. Returns the number of rows changed; their
// texts, columns and counts agree afterwards. Does not touch dirty.
int32_t redun(model::Store& s, int cls);

// Fix Unused Colours, mcl(8): the report of the three classes is written to
// system/bin/colorcheck.txt under data_folder and shown; "Remove unused
// colours?" runs redun on Yes. "No unused colours found." when clean;
// "Change to Polygons." in the draw-order view. True when the store changed
// (dirty is then set).
bool fix_unused_colours(model::Store& s, platform::Prompt& ui, const std::string& data_folder,
                        bool draworder_view);

// finchk's warning after a load ("" for none); fixed_types lists the points
// whose xpm and bitmap the load repaired ("" for none).
std::string finchk_text(const model::Store& s, const std::string& fixed_types);

}  // namespace korvex::workbench

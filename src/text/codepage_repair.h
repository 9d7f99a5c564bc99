// Repairs of label strings whose bytes were taken in the wrong encoding:
// single-page bytes inside a UTF-8 file, and UTF-8 bytes inside a file of
// code page 1252.
#pragma once

#include <string>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::text {

enum CpRepairMode : int {
    k_repair_in_utf8 = 0,  // the file is UTF-8: page bytes become UTF-8
    k_repair_in_1252 = 1,  // the file is 1252: UTF-8 bytes become page bytes
};

struct CpRepair {
    std::string report;     // a head of 40 "*" and the class word, then one line a repaired string
    bool repaired = false;  // some string was replaced
};

// Checks the string of the preferred language (s.opt.langid) of every
// element of class cls (0 polygons, 1 lines, 2 points, each with its active
// lines or extra points) and repairs it in the element's text and label.
CpRepair correct_cp(model::Store& s, platform::Prompt& ui, int cls, int mode);

}  // namespace korvex::text

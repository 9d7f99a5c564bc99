// Findings as a program reads them (JSON) and as a person reads them (one
// line a finding). Both are byte-for-byte the same for the same findings:
// no times, no paths.
#pragma once

#include <string>

#include "workbench/finding.h"

namespace korvex::workbench {

// The class word of a finding: "polygon", "line", "point", "active-line",
// "extra-point", or "file" for the file as a whole.
std::string finding_class_word(int cls);

// {"count": n, "findings": [{"class": .., "type": .., "check": .., "message": ..}, ..]}
// with a line end behind. Strings are valid UTF-8 JSON: a byte that is not
// part of UTF-8 becomes U+FFFD.
std::string findings_json(const Findings& f);

// "point 0x02a00 over-max-size: day picture is 80 x 80, ..." a line; a
// finding of the whole file has no type.
std::string findings_lines(const Findings& f);

}  // namespace korvex::workbench

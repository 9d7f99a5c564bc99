// Labels the file's code page cannot hold. A device reads every string of a
// TYP in the one code page of its header; a character that page lacks is
// dropped in silence by the compilers, so the style ships without it.
#pragma once

#include "model/store.h"
#include "workbench/finding.h"

namespace korvex::workbench {

inline constexpr const char* k_check_label_codepage = "label-codepage";

// Every String line of every element, ordinary and behind the lines and
// points. A string's bytes are in the page of its language (UTF-8 in a
// 65001 file); it is listed when a byte is undefined there, or when one of
// its characters has no place in the file's code page. The message quotes
// the string in UTF-8 and names its language.
Findings chk_label_codepage(const model::Store& s);

}  // namespace korvex::workbench

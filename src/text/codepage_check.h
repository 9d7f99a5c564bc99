// Whether the preferred label language can be written in the file's code
// page: a mismatch turns its labels into question marks on save.
#pragma once

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::text {

// True when the page of the preferred language (s.opt.langid) is the file's
// code page, or the file is UTF-8. Otherwise ask says whether the user may
// go on anyway (a yes gives true); without ask a plain note is shown.
bool chkcp(const model::Store& s, platform::Prompt& ui, bool ask);

}  // namespace korvex::text

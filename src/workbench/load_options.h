// The load options: which classes and night colours a load takes.
#pragma once

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::workbench {

// True when ldopts is six characters of "0" and "1".
bool valid_ldopts(const std::string& text);

// With any class or night colour switched off, the user confirms the load;
// anything but yes refuses it.
bool chkldop(const model::Store& s, platform::Prompt& ui);

}  // namespace korvex::workbench

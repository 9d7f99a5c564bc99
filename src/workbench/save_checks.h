// The checks a save runs on the identifier fields before anything is
// written: the window's save flow and the command line's encode share them,
// so a file written by either passed the same questions.
#pragma once

#include <string>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::workbench {

// The fields at the top of the window a refused save sends the focus to.
enum class TopField { none, fid, pid, codepage };

struct IdCheck {
    bool ok = false;
    TopField focus = TopField::none;  // where the user is to correct
    bool refused = false;             // "Check: PID=0" answered No
};

// FID present, a number and at most 65535; with_codepage (a TYP save) a
// code page from 1 to 65535; PID a number; PID 0 only when the user goes on.
// Each refusal says its message first.
IdCheck check_ids(const model::Store& s, platform::Prompt& ui, const integration::Messages& msgs, bool with_codepage);

// Save as Text needs numbers in both fields: "Please enter FID" and
// "Please enter Product code" otherwise.
bool check_text_ids(const model::Store& s, platform::Prompt& ui, const integration::Messages& msgs);

// A field's text without blanks and line ends around it.
std::string trim_field(const std::string& t);

// Elements of any class or a draw order: false means there is nothing to save.
bool has_data(const model::Store& s);

}  // namespace korvex::workbench

#include "workbench/load_options.h"

namespace korvex::workbench {

bool valid_ldopts(const std::string& text) {
    if (text.size() != 6) return false;
    for (char c : text)
        if (c != '0' && c != '1') return false;
    return true;
}

bool chkldop(const model::Store& s, platform::Prompt& ui) {
    if (s.ldopts.find('0') == std::string::npos) return true;
    return ui.yes_no_cancel("Load options apply (see Settings). Continue?") == platform::Answer::yes;
}

}  // namespace korvex::workbench

#include "text/codepage_check.h"

#include <string>

#include "typ/encoding.h"

namespace korvex::text {

namespace {

}  // namespace

bool chkcp(const model::Store& s, platform::Prompt& ui, bool ask) {
    const int page = typ::lang_cp(s, s.opt.langid);
    if (page == s.codepage || s.codepage == typ::k_utf8) return true;
    const std::string text = "'" + s.opt.langname + "' (" + std::to_string(page) +
                             ") of preferred language,' does not match codepage (" +
                             std::to_string(s.codepage) + ")";
    if (ask) return ui.yes_no("Check Codepage for " + text + "\r\nContinue anyway?");
    ui.message(text);
    return false;
}

}  // namespace korvex::text

#include "workbench/save_checks.h"
#include "workbench/message_ids.h"

#include <string>
#include <utility>

namespace korvex::workbench {

namespace {

constexpr long k_largest_id = 65535;

bool all_digits(const std::string& t) { return !t.empty() && t.find_first_not_of("0123456789") == std::string::npos; }

// A decimal number of up to nine digits; larger ones read as 999999999.
long number(const std::string& t) { return t.size() > 9 ? 999999999L : std::stol(t); }

}  // namespace

std::string trim_field(const std::string& t) {
    const size_t a = t.find_first_not_of(" \t\r\n");
    if (a == std::string::npos) return {};
    const size_t b = t.find_last_not_of(" \t\r\n");
    return t.substr(a, b - a + 1);
}

bool check_text_ids(const model::Store& s, platform::Prompt& ui, const integration::Messages& msgs) {
    for (const auto& [field, message] : {std::pair{&s.fid, m_enter_fid}, std::pair{&s.pid, m_enter_pid}}) {
        if (all_digits(trim_field(*field))) continue;
        ui.message(msgs.get_msg(message));
        return false;
    }
    return true;
}

IdCheck check_ids(const model::Store& s, platform::Prompt& ui, const integration::Messages& msgs, bool with_codepage) {
    IdCheck r;
    auto refuse = [&](int message, TopField field) {
        ui.message(msgs.get_msg(message));
        r.focus = field;
        return r;
    };
    const std::string fid = trim_field(s.fid);
    if (fid.empty()) return refuse(m_enter_fid, TopField::fid);
    if (!all_digits(fid)) return refuse(m_valid_fid, TopField::fid);
    if (number(fid) > k_largest_id) return refuse(m_fid_too_big, TopField::fid);
    if (with_codepage && (s.codepage <= 0 || s.codepage > k_largest_id)) return refuse(m_valid_codepage, TopField::codepage);
    const std::string pid = trim_field(s.pid);
    if (!all_digits(pid)) return refuse(m_valid_pid, TopField::pid);
    if (number(pid) == 0 && !ui.yes_no("Check: PID=0 \r\n\r\n Continue?")) {
        r.refused = true;
        return r;
    }
    r.ok = true;
    return r;
}

bool has_data(const model::Store& s) {
    if (s.pg_n + s.ln_n + s.pt_n + s.ln_nact + s.pt_nx > 0) return true;
    return s.drwlist.find_first_not_of(' ') != std::string::npos;
}

}  // namespace korvex::workbench

#include "workbench/history.h"

namespace korvex::workbench {

struct History::Step {};
struct History::Open {};

History::History(model::Store& s, size_t limit) : s_(s), limit_(limit < 1 ? 1 : limit) {}
History::~History() = default;

History::Recorder::Recorder(Recorder&& other) noexcept : h_(other.h_), outer_(other.outer_) { other.h_ = nullptr; }
History::Recorder::~Recorder() { close(); }
void History::Recorder::rename(std::string) {}
void History::Recorder::close() { h_ = nullptr; }

History::Recorder History::open(std::string, Scope) { return Recorder(this, true); }
bool History::recording() const { return open_ != nullptr; }
std::string History::undo_name() const { return {}; }
std::string History::redo_name() const { return {}; }
std::vector<std::string> History::names() const { return {}; }
Follow History::undo() { return {}; }
Follow History::redo() { return {}; }
Follow History::jump(size_t) { return {}; }
void History::clear() {}
void History::mark_saved() {}
void History::set_limit(size_t n) { limit_ = n < 1 ? 1 : n; }
size_t History::bytes() const { return 0; }
void History::close_step() {}
void History::push(std::unique_ptr<Step>) {}
Follow History::apply(bool) { return {}; }

std::optional<History::Recorder> open_step(History* history, std::string name, Scope scope) {
    if (!history) return std::nullopt;
    return history->open(std::move(name), std::move(scope));
}

}  // namespace korvex::workbench

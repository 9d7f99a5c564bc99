#include "editor/undo_history.h"

namespace korvex::editor {

void UndoHistory::reset(std::vector<uint32_t> picture) {
    shown_ = std::move(picture);
    steps_.clear();
    cursor_ = 0;
    level_ = 0;
    top_ = 0;
}

void UndoHistory::store(const std::vector<uint32_t>& picture) {
    steps_.resize(cursor_);
    Step step;
    if (picture.size() != shown_.size()) {
        step.before = shown_;
        step.after = picture;
    } else {
        for (size_t i = 0; i < picture.size(); ++i)
            if (picture[i] != shown_[i]) step.changes.push_back({static_cast<uint32_t>(i), shown_[i], picture[i]});
    }
    shown_ = picture;
    steps_.push_back(std::move(step));
    ++cursor_;
    if (steps_.size() > static_cast<size_t>(k_levels)) {
        steps_.pop_front();
        --cursor_;
    }
    ++level_;
    top_ = level_;
}

bool UndoHistory::undo(std::vector<uint32_t>& picture) {
    if (cursor_ == 0) return false;
    --cursor_;
    const Step& step = steps_[cursor_];
    if (!step.before.empty() || !step.after.empty()) shown_ = step.before;
    for (const Change& c : step.changes) shown_[c.at] = c.before;
    --level_;
    picture = shown_;
    return true;
}

bool UndoHistory::redo(std::vector<uint32_t>& picture) {
    if (cursor_ >= steps_.size()) return false;
    const Step& step = steps_[cursor_];
    if (!step.before.empty() || !step.after.empty()) shown_ = step.after;
    for (const Change& c : step.changes) shown_[c.at] = c.after;
    ++cursor_;
    ++level_;
    picture = shown_;
    return true;
}

}  // namespace korvex::editor

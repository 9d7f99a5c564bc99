// The undo history of the icon editor: a numbered line of levels, each the
// whole picture as it stood after one action. Level 0 is the picture as
// opened (or as a size change or a clear left it). A new action after an
// undo drops the levels above it. Only the differences between neighbouring
// levels are kept, so a stroke costs what it changed, not the picture size.
//
// A level is a plane of 32-bit values: palette indices for a palette icon,
// colours for a true-colour icon. The caller keeps the picture; the history
// hands back what the picture must become.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace korvex::editor {

class UndoHistory {
public:
    // The most levels above level 0 that are kept; past it the oldest is
    // forgotten and the level keeps counting.
    static constexpr int k_levels = 500;

    // Clears the history and stores picture as level 0.
    void reset(std::vector<uint32_t> picture);
    // A new action: the level goes up by one, the levels above are dropped,
    // and picture is stored there. A picture of another length than the
    // level below is kept whole in its step.
    void store(const std::vector<uint32_t>& picture);

    // The picture one level back or forward; false (and picture untouched)
    // at the bottom or the top.
    bool undo(std::vector<uint32_t>& picture);
    bool redo(std::vector<uint32_t>& picture);

    int level() const { return level_; }    // the level shown
    int top() const { return top_; }        // the highest level that holds a picture
    bool can_undo() const { return cursor_ > 0; }
    bool can_redo() const { return cursor_ < steps_.size(); }
    // The picture of the level shown.
    const std::vector<uint32_t>& current() const { return shown_; }

private:
    struct Change {
        uint32_t at, before, after;
    };
    struct Step {
        std::vector<Change> changes;
        std::vector<uint32_t> before, after;  // whole levels, when the length changed
    };
    std::vector<uint32_t> shown_;
    std::deque<Step> steps_;  // step k turns level (bottom + k) into the next
    size_t cursor_ = 0;       // steps below the level shown
    int level_ = 0;
    int top_ = 0;
};

}  // namespace korvex::editor

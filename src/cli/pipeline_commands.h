// The commands a map pipeline runs: check a style before shipping it, and
// repair what the window's repairs repair.
#pragma once

#include <string>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::cli {

// The prompt of a load for a pipeline: says what the console says, and
// keeps the draw-order entries a text load removed as repeats, which the
// store no longer holds but the check must name.
class LoadPrompt : public platform::ConsolePrompt {
public:
    using platform::ConsolePrompt::ConsolePrompt;
    void message(const std::string& text) override;
    const std::string& dropped_draworder() const { return dropped_; }

private:
    std::string dropped_;
};

// Prints the findings (JSON with json, else a line each) to standard output.
// Returns 0 for none, 1 for findings.
int check(const model::Store& s, bool json, int max_size, const std::string& dropped_draworder);

// Runs the repairs asked for on the loaded store and says on standard error
// what they changed. The caller writes the store.
void repair(model::Store& s, bool unused_colours, bool non_bitmap_lines);

}  // namespace korvex::cli

// What every batch bitmap tool shares: the points it acts on, the refusals
// before it starts, the prompts of a change without undo, the limits on size
// and colours, and the report of the points it passed over.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/browser.h"
#include "workbench/point_section.h"
#include "workbench/settings_file.h"

namespace korvex::workbench {

constexpr int k_max_colours = 255;
constexpr int k_max_size_least = 12;
constexpr int k_max_size_default = 64;

// What the window hands a batch tool.
struct BatchRequest {
    bool all = false;         // the selected-elements box: every element of the class in view
    int max_size = k_max_size_default;
    std::string data_folder;  // where report files go
};

// The Max Size setting as the tools use it: at least 12, 64 when unset,
// no more than a record can hold (255).
int max_size(const AppSettings& settings);

// The store rows of the cells of both selection lists, primary first, each
// row once (a night cell gives its element); every row of the class in view
// with all.
std::vector<int32_t> batch_rows(const model::Store& s, const Browser& b, bool all);

// The refusals every tool makes before it changes anything: "No data." for
// an empty class in view, "Please CTRL/SHIFT or CTRL A select." with the
// selection hint when nothing is selected. Fills rows; false stops the tool.
bool batch_selection(const model::Store& s, const Browser& b, platform::Prompt& ui, const integration::Messages& m,
                     bool all, std::vector<int32_t>& rows);

// "Reload TYP file to undo changes.", then "Continue?" with Yes, No, Cancel:
// anything but Yes stops the tool. A user who relies on Edit > Undo may turn
// the questions off (s.opt.ask_reload_undo): then it goes on unasked.
bool confirm_no_undo(const model::Store& s, platform::Prompt& ui, const integration::Messages& m);

// batch_selection, then confirm_no_undo: the start of a tool that changes
// the points it is given.
bool batch_start(const model::Store& s, const Browser& b, platform::Prompt& ui, const integration::Messages& m,
                 bool all, std::vector<int32_t>& rows);

// The class in view holds points (ordinary or extra).
bool points_in_view(const Browser& b);

// The lines a tool reports about the points it passed over, each line once.
class BatchReport {
public:
    void add(const std::string& line);
    void add_lines(const std::string& lines);  // CR LF ended lines, as chkcanv writes them
    bool empty() const { return lines_.empty(); }
    // "Excluded:" and the lines, CR LF ended.
    std::string text() const;
    // Shows the report (and writes it to relative under the data folder)
    // when it has lines.
    void show(platform::Prompt& ui, const std::string& data_folder, const std::string& relative,
              const std::string& title) const;

private:
    std::vector<std::string> lines_;
    std::unordered_set<std::string> seen_;
};

// The limits a tool checks on a picture it is about to write: no more than
// 255 colours (type + " colours exceeds 255"), width and height no more than
// max (type + " Max width/height set to " + max + ".Change in Settings").
// False, with the report line, when the picture breaks one.
bool within_colours(const PointPicture& p, const std::string& type, BatchReport& report);
bool within_size(int width, int height, int max, const std::string& type, BatchReport& report);

}  // namespace korvex::workbench

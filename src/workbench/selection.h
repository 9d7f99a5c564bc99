// The selection lists as the rest of the program holds them: comma strings
// of cell numbers from 0 with a comma at both ends (",3,7,"), "" for none.
#pragma once

#include <string>
#include <string_view>

namespace korvex::workbench {

// Calls f(cell) for each number of a list, in list order; skips anything
// that is not a number.
template <class F>
void for_each_cell(std::string_view list, F&& f) {
    int value = 0;
    bool digits = false;
    for (const char c : list) {
        if (c >= '0' && c <= '9') {
            if (value < 100000000) value = value * 10 + (c - '0');
            digits = true;
        } else {
            if (digits) f(value);
            value = 0;
            digits = false;
        }
    }
    if (digits) f(value);
}

// True when the list holds the cell.
bool list_has(const std::string& list, int cell);
// Adds ",n," (the list keeps one leading comma); no change when present.
void list_add(std::string& list, int cell);
// Removes the cell; a list left as "," becomes "".
void list_remove(std::string& list, int cell);
// Number of cells in the list.
int list_count(const std::string& list);

}  // namespace korvex::workbench

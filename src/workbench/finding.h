// One finding of a check: what a report line says, in a form a program can
// read (the check command's JSON) as well as a person.
#pragma once

#include <string>
#include <vector>

namespace korvex::workbench {

struct Finding {
    int cls = -1;         // model::ElementClass; -1 for the file as a whole
    std::string type;     // the element's type as the grid shows it ("0x2a0e"); "" for none
    std::string check;    // a stable short name of the check ("unused-colours")
    std::string message;  // the report's words for it
};

using Findings = std::vector<Finding>;

}  // namespace korvex::workbench

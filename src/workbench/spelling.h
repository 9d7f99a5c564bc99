// Spelling of labels against a word list of one word a line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/finding.h"

namespace korvex::workbench {

struct Dictionary {
    std::string name;     // what the report calls it (the file's path)
    int language = -1;    // label language it is for: 4 English, 2 German, -1 custom
    std::unordered_set<std::string> words;  // lower-cased
    bool has(std::string_view word) const;
};

// Reads a word list (one word a line, CR LF or LF); nullopt when the file
// cannot be read.
std::optional<Dictionary> read_dictionary(const std::string& path);

// Where spelchk(entry) looks: entry 0 English, 1 German, in order the data
// folder's dictionaries/EN.dic (DE.dic), the program's data folder, the
// system word list; entry 2 the custom path. The first existing path, else
// the first candidate (for "Cannot find " + path).
std::vector<std::string> dictionary_candidates(int entry, const std::string& data_folder,
                                               const std::string& program_data, const std::string& custom);

// The words of one label as the check splits them, lower-cased.
std::vector<std::string> label_words(const std::string& label);

// spelchk: words of the preferred-language labels of class cls not in the
// dictionary, one line "type word"; headed "Dictionary used: " + name.
std::string spelchk(const model::Store& s, int cls, const Dictionary& dict);

// The same as findings ("spelling").
Findings spelling_findings(const model::Store& s, int cls, const Dictionary& dict);

// The Tools entry: finds the dictionary ("Cannot find " + path), checks the
// class in view and shows the report (system/bin/spelling.txt).
void spelling_flow(const model::Store& s, platform::Prompt& ui, int entry, const std::string& data_folder,
                   const std::string& program_data, const std::string& custom);

}  // namespace korvex::workbench

#include "workbench/spelling.h"

namespace korvex::workbench {

bool Dictionary::has(std::string_view word) const { return words.count(std::string(word)) > 0; }
std::optional<Dictionary> read_dictionary(const std::string&) { return std::nullopt; }
std::vector<std::string> dictionary_candidates(int, const std::string&, const std::string&, const std::string&) {
    return {};
}
std::vector<std::string> label_words(const std::string&) { return {}; }
std::string spelchk(const model::Store&, int, const Dictionary&) { return {}; }
Findings spelling_findings(const model::Store&, int, const Dictionary&) { return {}; }
void spelling_flow(const model::Store&, platform::Prompt&, int, const std::string&, const std::string&,
                   const std::string&) {}

}  // namespace korvex::workbench

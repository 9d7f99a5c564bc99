// The fonts installed on the machine, and their saved listing fonts.dat,
// which spares the preferences dialog a new walk over the system's fonts.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvex::platform {

class FontList {
public:
    virtual ~FontList() = default;
    // The family names of the installed fonts.
    virtual std::vector<std::string> families() const = 0;
    // True when a family of that name is installed (case does not matter,
    // as with the fonts of a desktop).
    bool has(const std::string& name) const;
};

// A fixed list: for tests, and for a listing read back from fonts.dat.
class FixedFontList : public FontList {
public:
    explicit FixedFontList(std::vector<std::string> names) : names_(std::move(names)) {}
    std::vector<std::string> families() const override { return names_; }

private:
    std::vector<std::string> names_;
};

// The check value on the first line of fonts.dat.
constexpr int k_fonts_check = 1234;

// fonts.dat: the check value, the count, then one name a line (CR LF).
std::string write_fonts_dat(const std::vector<std::string>& names);
// The names of a fonts.dat text; nothing when the check value is wrong or the
// file ends before the count is reached.
std::optional<std::vector<std::string>> read_fonts_dat(std::string_view text);

}  // namespace korvex::platform

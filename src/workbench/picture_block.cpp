#include "workbench/picture_block.h"

#include <cctype>

#include "model/store.h"
#include "typ/curf_access.h"

namespace korvex::workbench {

std::vector<std::string> section_lines(const std::string& section) {
    std::vector<std::string> out;
    size_t at = 0;
    while (at < section.size()) {
        size_t end = section.find('\n', at);
        if (end == std::string::npos) end = section.size();
        std::string line = section.substr(at, end - at);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        out.push_back(std::move(line));
        at = end + 1;
    }
    return out;
}

std::string joined_section(const std::vector<std::string>& lines) {
    std::string out;
    for (const std::string& l : lines) {
        out += l;
        out += "\r\n";
    }
    return out;
}

namespace {

std::string squeezed_low(const std::string& line) {
    std::string out;
    for (char c : line)
        if (c != ' ' && c != '\t') out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

bool quoted(const std::string& line) {
    size_t k = 0;
    while (k < line.size() && (line[k] == ' ' || line[k] == '\t')) ++k;
    return k < line.size() && line[k] == '"';
}

}  // namespace

PictureBlock find_picture(const std::vector<std::string>& lines, const std::vector<std::string>& keys, int from) {
    PictureBlock b;
    for (int i = from; i < static_cast<int>(lines.size()); ++i) {
        // Colour lines and rows (quoted) are most of a picture and never a key.
        const std::string& at_line = lines[static_cast<size_t>(i)];
        const size_t first = at_line.find_first_not_of(" \t");
        if (first != std::string::npos && at_line[first] == '"') continue;
        const std::string low = squeezed_low(at_line);
        for (const std::string& k : keys) {
            if (low.rfind(k, 0) != 0) continue;
            const std::string& line = lines[static_cast<size_t>(i)];
            const size_t open = line.find('"');
            const size_t close = open == std::string::npos ? std::string::npos : line.find('"', open + 1);
            if (close == std::string::npos) continue;
            b.head = i;
            b.key = line.substr(0, line.find('=') + 1);
            b.behind = line.substr(close + 1);
            int f[4] = {0, 0, 0, 0};
            int n = 0;
            const std::string nums = line.substr(open + 1, close - open - 1);
            size_t p = 0;
            while (p < nums.size() && n < 4) {
                while (p < nums.size() && !std::isdigit(static_cast<unsigned char>(nums[p]))) ++p;
                if (p >= nums.size()) break;
                int v = 0;
                for (; p < nums.size() && std::isdigit(static_cast<unsigned char>(nums[p])); ++p) v = std::min(v * 10 + (nums[p] - '0'), 100000);
                f[n++] = v;
            }
            b.width = f[0];
            b.height = f[1];
            b.colours = f[2];
            b.cpp = f[3];
            int at = i + 1;
            b.first_colour = at;
            while (b.colour_lines < b.colours && at < static_cast<int>(lines.size()) && quoted(lines[static_cast<size_t>(at)])) {
                ++b.colour_lines;
                ++at;
            }
            b.first_row = at;
            while (b.row_lines < b.height && at < static_cast<int>(lines.size()) && quoted(lines[static_cast<size_t>(at)])) {
                ++b.row_lines;
                ++at;
            }
            return b;
        }
    }
    return b;
}

std::string head_line(const std::string& key, int w, int h, int colours, int cpp, const std::string& behind) {
    return key + '"' + std::to_string(w) + ' ' + std::to_string(h) + ' ' + std::to_string(colours) + ' ' +
           std::to_string(cpp) + '"' + behind;
}

ColourLineParts colour_parts(const std::string& line, int cpp) {
    ColourLineParts c;
    const size_t open = line.find('"');
    if (open == std::string::npos) return c;
    const size_t close = line.find('"', open + 1);
    if (close == std::string::npos) return c;
    const std::string inner = line.substr(open + 1, close - open - 1);
    const size_t key_len = cpp > 0 ? static_cast<size_t>(cpp) : 1;
    if (inner.size() < key_len + 3) return c;
    c.key = inner.substr(0, key_len);
    const size_t cat = inner.find(" c ", key_len);
    if (cat == std::string::npos) return c;
    std::string value = inner.substr(cat + 3);
    while (!value.empty() && value.back() == ' ') value.pop_back();
    while (!value.empty() && value.front() == ' ') value.erase(value.begin());
    for (char& ch : value) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    if (value == "NONE") value = "none";
    c.value = value;
    std::string tail = line.substr(close + 1);
    for (char& ch : tail) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    c.alpha = tail.find("alpha") != std::string::npos;
    return c;
}

std::string unquoted(const std::string& line) {
    const size_t open = line.find('"');
    if (open == std::string::npos) return line;
    const size_t close = line.find('"', open + 1);
    return line.substr(open + 1, close == std::string::npos ? std::string::npos : close - open - 1);
}

std::string canonical_symbol(int n, int count) {
    if (count < model::cpp_limit) return std::string(1, static_cast<char>(n + 36));
    return {static_cast<char>(n / 16 + 36), static_cast<char>(n % 16 + 36)};
}

void set_line_widths(std::vector<std::string>& lines, int head, int line, int border) {
    int at = head;
    for (int k = static_cast<int>(lines.size()) - 1; k >= 0; --k) {
        const std::string low = typ::lower(lines[static_cast<size_t>(k)]);
        if (low.rfind("linewidth=", 0) == 0 || low.find("lwidth(=") != std::string::npos ||
            low.rfind("borderwidth=", 0) == 0) {
            lines.erase(lines.begin() + k);
            if (k < at) --at;
        }
    }
    lines.insert(lines.begin() + at, {"LineWidth=" + std::to_string(line), "BorderWidth=" + std::to_string(border)});
}

}  // namespace korvex::workbench

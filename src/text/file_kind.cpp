#include "text/file_kind.h"

#include <algorithm>

namespace korvex::text {

namespace {

constexpr std::string_view k_typ_magic = "GARMIN TYP";
constexpr size_t k_typ_magic_at = 2;

char ascii_lower(char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c); }

std::string kind_extension(const std::string& path) {
    const size_t dot = path.rfind('.');
    if (dot == std::string::npos || path.find('/', dot) != std::string::npos) return {};
    std::string ext = path.substr(dot);
    for (char& c : ext) c = ascii_lower(c);
    return ext;
}

// The word that opens at p, lower-cased, up to "]" or max characters.
std::string bracket_word(std::string_view data, size_t p, size_t max) {
    std::string word;
    for (size_t k = p; k < data.size() && k < p + max && data[k] != ']'; ++k) word += ascii_lower(data[k]);
    return word;
}

// A MapTK project: a "[poi]", "[polyline]" or "[polygon]" line, and none of
// the text form's "[_" markers.
bool has_project_sections(std::string_view data) {
    if (data.find("[_") != std::string_view::npos) return false;
    for (size_t p = data.find('['); p != std::string_view::npos; p = data.find('[', p + 1)) {
        const std::string word = bracket_word(data, p, 10);
        if (word == "[poi" || word == "[polyline" || word == "[polygon") return true;
    }
    return false;
}

// The text form's section markers, any of which makes a text.
bool has_text_sections(std::string_view data) {
    for (size_t p = data.find("[_"); p != std::string_view::npos; p = data.find("[_", p + 2)) {
        const std::string word = bracket_word(data, p, 13);
        if (word == "[_id" || word == "[_draworder" || word == "[_polygon" || word == "[_line" || word == "[_point")
            return true;
    }
    return false;
}

bool has_typ_magic(std::string_view data) {
    return data.size() >= k_typ_magic_at + k_typ_magic.size() &&
           data.substr(k_typ_magic_at, k_typ_magic.size()) == k_typ_magic;
}

}  // namespace

// By content alone: a TYP file carries its magic at offset 2 (its first
// byte, the header length, is "[" for the plain header, so the magic
// decides first); project sections without any "[_" marker make a project;
// a section marker of the text form, or a first line opening a section or a
// comment, makes a text. Anything else is no file of ours, whatever its name.
FileKind file_kind(std::string_view data, const std::string& path) {
    if (has_typ_magic(data)) return FileKind::typ;
    if (has_project_sections(data)) return FileKind::prj;
    if (has_text_sections(data)) return FileKind::text;
    size_t i = 0;
    if (data.substr(0, 3) == "\xEF\xBB\xBF") i = 3;
    while (i < data.size() && (data[i] == ' ' || data[i] == '\t' || data[i] == '\r' || data[i] == '\n')) ++i;
    const bool prj = kind_extension(path) == ".prj";
    if (i < data.size() && (data[i] == '[' || data[i] == ';')) return prj ? FileKind::prj : FileKind::text;
    // A project of keys alone ("familyid=") is told by its name, if it is text.
    const bool textual = std::none_of(data.begin(), data.end(), [](char c) {
        const auto b = static_cast<unsigned char>(c);
        return b < 32 && b != '\t' && b != '\r' && b != '\n';
    });
    return prj && textual ? FileKind::prj : FileKind::unknown;
}

std::string unreadable_reason(std::string_view data, FileKind kind) {
    if (data.empty()) return "the file is empty";
    if (kind == FileKind::unknown)
        return "not a TYP file (no \"GARMIN TYP\" signature at offset 2), a TYP text or a MapTK project";
    return {};
}

std::string not_typ_reason(std::string_view data) {
    if (data.empty()) return "the file is empty";
    if (!has_typ_magic(data)) return "not a TYP file (no \"GARMIN TYP\" signature at offset 2)";
    return {};
}

std::string not_text_reason(std::string_view data, const std::string& path) {
    if (data.empty()) return "the file is empty";
    const FileKind kind = file_kind(data, path);
    if (kind == FileKind::typ) return "a TYP file, not a text (open it with Open TYP)";
    return unreadable_reason(data, kind);
}

}  // namespace korvex::text

#include "history_fixture.h"

#include <algorithm>
#include <unistd.h>

#include "text/text_writer.h"
#include "workbench/draw_order_model.h"
#include "workbench/draw_order_ops.h"
#include "workbench/type_key.h"

namespace korvex::workbench::test {

namespace fs = std::filesystem;

HistoryFolder::HistoryFolder() {
    static int made = 0;
    root = fs::temp_directory_path() / ("korvex_history_" + std::to_string(::getpid()) + "_" + std::to_string(++made));
    fs::remove_all(root);
    fs::create_directories(root / "system");
}

HistoryFolder::~HistoryFolder() {
    std::error_code ec;
    fs::remove_all(root, ec);
}

HistoryBench::HistoryBench() {
    host.s = &s;
    session.start();
    ops.set_history(&session.history());
}

bool HistoryBench::open(const std::string& path) {
    const fs::path copy = dir.root / fs::path(path).filename();
    fs::copy_file(path, copy, fs::copy_options::overwrite_existing);
    // The corpus is read-only, and Windows will not remove a read-only copy.
    fs::permissions(copy, fs::perms::owner_write, fs::perm_options::add);
    return session.open_path(copy.string());
}

std::string HistoryBench::saved() {
    // A save keeps the bytes it wrote as the open file, and the next save
    // carries unknown header bytes over from them: the copy keeps the
    // project as the changes left it.
    model::Store copy = s;
    platform::ScriptedPrompt quiet;
    return testing::encode(copy, quiet) + "\n=====\n" + testing::text_of(copy, quiet);
}

namespace {

int pick(Rng& rng, int below) { return below <= 0 ? 0 : std::uniform_int_distribution<int>(0, below - 1)(rng); }

// A class that has elements (points when none has), now in view.
int class_with_rows(HistoryBench& b, Rng& rng, int last_class = model::k_extra_points) {
    for (int tries = 0; tries < 8; ++tries) {
        const int cls = pick(rng, last_class + 1);
        if (end_row(b.s, cls) > first_row(b.s, cls)) {
            b.s.curclass = cls;
            return cls;
        }
    }
    b.s.curclass = model::k_points;
    return -1;
}

int32_t random_row(HistoryBench& b, Rng& rng, int cls) {
    return first_row(b.s, cls) + pick(rng, end_row(b.s, cls) - first_row(b.s, cls));
}

std::vector<int32_t> random_rows(HistoryBench& b, Rng& rng, int cls, int most) {
    std::vector<int32_t> rows;
    for (int n = 1 + pick(rng, most); n > 0; --n) rows.push_back(random_row(b, rng, cls));
    return rows;
}

std::string hex_of(int v) {
    char out[16];
    std::snprintf(out, sizeof out, "%x", v);
    return out;
}

void new_element(HistoryBench& b, Rng& rng) {
    const int cls = pick(rng, 5);
    const int id = 1 + pick(rng, 0xfffe);
    const int activity = pick(rng, 6);
    b.element_dialogs.on_poisizes = [id](NewElementForm& f) {
        if (f.cls == model::k_extra_points) f.type = hex_of(id);
        return true;
    };
    b.element_dialogs.on_line = [activity](NewElementForm& f) {
        f.activity = activity;
        if (f.type.empty()) f.type = "00001";
        return true;
    };
    b.ops.new_element(cls);
}

void paste_back(HistoryBench& b, Rng& rng, int entry) {
    const int cls = class_with_rows(b, rng, model::k_active_lines);
    if (cls < 0) return;
    const std::vector<int32_t> rows = random_rows(b, rng, cls, 3);
    // Cut, then paste what was cut: the elements come back as new rows.
    if (!b.ops.cut(rows)) return;
    switch (entry) {
    case 3: b.clip.set_text(b.clip.unicode_text()); b.ops.mpaste3(); break;
    case 8: b.ops.mpasteu8(); break;
    default: b.ops.mpaste(); break;
    }
}

// A copied element pasted over itself with another label: the row changes
// where it stands.
void paste_over(HistoryBench& b, Rng& rng) {
    const int cls = class_with_rows(b, rng, model::k_active_lines);
    if (cls < 0 || !b.ops.mcopy({random_row(b, rng, cls)})) return;
    std::string text = b.clip.unicode_text();
    const size_t at = text.find("String1=0x");
    if (at == std::string::npos) return;
    text.insert(text.find(',', at) + 1, "Z" + std::to_string(pick(rng, 100)));
    b.clip.set_unicode_text(text);
    b.ops.mpaste();
}

void create_copy(HistoryBench& b, Rng& rng) {
    const int cls = class_with_rows(b, rng, model::k_points);
    if (cls >= 0) b.ops.mcreatecopy(random_row(b, rng, cls));
}

void remove(HistoryBench& b, Rng& rng) {
    const int cls = class_with_rows(b, rng);
    if (cls >= 0) b.ops.mdelete(random_rows(b, rng, cls, 4));
}

void apply_label(HistoryBench& b, Rng& rng) {
    const int cls = class_with_rows(b, rng);
    if (cls < 0) return;
    const std::string panel = panel_of(b, cls, random_row(b, rng, cls));
    b.session.apply_code_panel(with_line(panel, "String1=", "0x04,Applied " + std::to_string(pick(rng, 1000))));
}

// A new type number in the panel: the apply and the move to its place, one
// step as the window makes it.
void renumber(HistoryBench& b, Rng& rng) {
    const int cls = class_with_rows(b, rng, model::k_points);
    if (cls < 0) return;
    const int32_t row = random_row(b, rng, cls);
    const std::string panel = panel_of(b, cls, row);
    const int type = cls == model::k_points ? 1 + pick(rng, 0x6f) : 1 + pick(rng, 0x3f);
    const int32_t old_code = row_type_code(b.s, cls, row);
    const auto step = b.history().open("", Scope::row_of(cls, row));
    if (!b.session.apply_code_panel(with_line(with_line(panel, "Type=", "0x" + hex_of(type)), "SubType=", "0x0")))
        return;
    b.ops.renumbered(cls, row, old_code);
}

std::vector<LevelTarget> polygon_targets(HistoryBench& b, Rng& rng) {
    std::vector<LevelTarget> out;
    if (b.s.pg_n <= 0) return out;
    for (int n = 1 + pick(rng, 3); n > 0; --n) out.push_back({random_row(b, rng, model::k_polygons), -1});
    return out;
}

void set_levels(HistoryBench& b, Rng& rng) {
    mlev(b.s, b.ui, b.msgs, model::k_polygons, polygon_targets(b, rng), pick(rng, 12), &b.history());
}

void lower_layer(HistoryBench& b, Rng& rng) {
    if (b.s.pg_n > 0) insert_lower_layer(b.s, b.ui, b.msgs, 1 + pick(rng, 6), polygon_targets(b, rng), &b.history());
}

void levels_for_selected(HistoryBench& b, Rng& rng) {
    drawsel(b.s, b.ui, b.msgs, model::k_polygons, polygon_targets(b, rng),
            pick(rng, 2) ? DrawselMode::each : DrawselMode::same, 1 + pick(rng, 8), &b.history());
}

void separate_entry(HistoryBench& b, Rng& rng) {
    EdpolRequest r;
    r.type = hex_of(1 + pick(rng, 0x7f));
    r.level = std::to_string(1 + pick(rng, 9));
    r.allow_duplicate = pick(rng, 2) == 1;
    edpol(b.s, b.ui, b.msgs, r, &b.history());
}

void remove_levels(HistoryBench& b, Rng& rng) {
    const auto entries = view_entries(b.s);
    if (entries.empty()) return;
    remove_entries(b.s, b.ui, b.msgs, {static_cast<int32_t>(pick(rng, static_cast<int>(entries.size())))}, &b.history());
}

void duplicates(HistoryBench& b, Rng& rng) {
    // A type listed twice, then the check that removes the second.
    const auto entries = view_entries(b.s);
    if (entries.empty()) return;
    const auto step = b.history().open("Duplicate", Scope::draw_order());
    // The copy comes first: the entry the list had is the one removed.
    b.s.drwlist = " " + entries[static_cast<size_t>(pick(rng, static_cast<int>(entries.size())))].code + "," +
                  std::to_string(1 + pick(rng, 9)) + b.s.drwlist;
    check_duplicates(b.s, b.ui, &b.history());
}

void top_fields(HistoryBench& b, Rng& rng) {
    switch (pick(rng, 4)) {
    case 0: b.session.set_fid(std::to_string(1 + pick(rng, 9000))); break;
    case 1: b.session.set_pid(std::to_string(1 + pick(rng, 9))); break;
    case 2: b.session.change_codepage(pick(rng, 2) ? 1250 : 1252); break;
    default: b.session.set_header_length(pick(rng, 2) ? "9c" : "6e"); break;
    }
}

}  // namespace

// The code panel's text of a row, as the window fills it.
std::string panel_of(HistoryBench& b, int cls, int32_t row) {
    b.s.curclass = cls;
    b.s.curel = row - first_row(b.s, cls) + 1;
    return text::convert(b.s, text::create_code(b.s, b.s.curel, cls, false));
}

// The first line starting with key gets value behind its '='.
std::string with_line(const std::string& text, const std::string& key, const std::string& value) {
    size_t at = text.find("\n" + key);
    if (at == std::string::npos) return text;
    at += 1;
    const size_t end = text.find_first_of("\r\n", at);
    return text.substr(0, at) + key + value + (end == std::string::npos ? "" : text.substr(end));
}

const std::vector<OpKind>& recorded_kinds() {
    static const std::vector<OpKind> kinds = {
        {"New", new_element},
        {"CutPaste", [](HistoryBench& b, Rng& r) { paste_back(b, r, 0); }},
        {"CutPastePlainText", [](HistoryBench& b, Rng& r) { paste_back(b, r, 3); }},
        {"CutPasteUtf8", [](HistoryBench& b, Rng& r) { paste_back(b, r, 8); }},
        {"PasteOver", paste_over},
        {"CreateCopy", create_copy},
        {"Delete", remove},
        {"Apply", apply_label},
        {"Renumber", renumber},
        {"SetLevels", set_levels},
        {"InsertLowerLayer", lower_layer},
        {"LevelsForSelected", levels_for_selected},
        {"SeparateEntry", separate_entry},
        {"RemoveEntries", remove_levels},
        {"Duplicates", duplicates},
        {"TopFields", top_fields},
    };
    return kinds;
}

}  // namespace korvex::workbench::test

#include "cli/commands.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "model/store.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "text/file_kind.h"
#include "text/load_driver.h"
#include "text/maptk_project.h"
#include "text/text_writer.h"
#include "typ/decoder.h"
#include "typ/encoder.h"
#include "integration/messages.h"
#include "workbench/load_options.h"
#include "workbench/save_checks.h"
#include "workbench/pipeline_checks.h"
#include "workbench/session.h"
#include "cli/pipeline_commands.h"

namespace korvex::cli {

namespace {

constexpr int k_msg_no_data = 3;

const char* k_usage_text =
    "usage: korvex-cli info FILE.typ|FILE.txt|FILE.prj\n"
    "       korvex-cli decode FILE.typ|FILE.txt|FILE.prj [-o OUT.txt] [--utf8]\n"
    "       korvex-cli encode FILE.typ|FILE.txt|FILE.prj [-o OUT.typ]\n"
    "       korvex-cli check FILE.typ|FILE.txt|FILE.prj [--json] [--max-size N]\n"
    "       korvex-cli repair FILE.typ|FILE.txt|FILE.prj -o OUT.typ|OUT.txt --unused-colours [--non-bitmap-lines]\n"
    "       korvex-cli img list MAP.img\n"
    "       korvex-cli img extract MAP.img [NAME.TYP] -o OUT.typ\n"
    "       korvex-cli img replace MAP.img NEW.typ|NEW.txt [--typ NAME.TYP] [--fid N] [--pid N] [-o OUT.img]\n"
    "check runs every read-only check; exit status 0 for no finding, 1 for findings, 2 for a file it\n"
    "cannot read. repair runs the repairs asked for and writes a TYP or a text by OUT's extension.\n"
    "options: --load-options 111111   classes and night colours to load (default 111111)\n"
    "         --offsets               show record offsets as comments in the text\n"
    "         --answer yes|no         the answer to every question (default yes)\n"
    "         --fid N, --pid N        family and product id to save with, in place of the file's\n"
    "         --codepage N            code page to save with, in place of the file's (decode and encode;\n"
    "                                 1250 to 1258, 874, 932, 936, 949, 950 or 65001)\n"
    "         --json                  check: the findings as one JSON object\n"
    "         --max-size N            check: the largest point width or height (default 64, at least 12)\n"
    "         --unused-colours        repair: remove unused colours and merge equal colour pairs\n"
    "         --non-bitmap-lines      repair: convert bitmap lines that are plain lines with a border\n"
    "         --version, --help\n";

}  // namespace

const char* usage_text() { return k_usage_text; }

namespace {

struct Args {
    std::string command;
    std::string input;
    std::string output;
    bool utf8 = false;
    bool offsets = false;
    std::string ldopts = "111111";
    std::string fid, pid;
    int codepage = 0;  // 0: the file's
    platform::Answer answer = platform::Answer::yes;
    bool json = false;
    int max_size = workbench::k_default_max_size;
    bool max_size_given = false;
    bool unused_colours = false;
    bool non_bitmap_lines = false;
};

// The smallest Max Size the settings accept.
constexpr int k_min_max_size = 12;

std::string lower_extension(const std::string& path) {
    const size_t slash = path.find_last_of("/\\");
    const size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
    std::string ext = path.substr(dot);
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

int usage(const std::string& why) {
    if (!why.empty()) std::fprintf(stderr, "korvex-cli: %s\n", why.c_str());
    std::fputs(k_usage_text, stderr);
    return k_usage;
}

// Returns an empty string when the arguments are fine, else the complaint.
std::string parse(int argc, char** argv, Args& a) {
    std::vector<std::string> rest;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        auto value = [&](std::string& into) -> bool {
            if (i + 1 >= argc) return false;
            into = argv[++i];
            return true;
        };
        if (arg == "-o" || arg == "--output") {
            if (!value(a.output)) return "-o needs a file name";
        } else if (arg == "--utf8") {
            a.utf8 = true;
        } else if (arg == "--offsets") {
            a.offsets = true;
        } else if (arg == "--load-options") {
            if (!value(a.ldopts) || !workbench::valid_ldopts(a.ldopts))
                return "--load-options needs six characters of 0 and 1";
        } else if (arg == "--fid" || arg == "--pid") {
            std::string& into = arg == "--fid" ? a.fid : a.pid;
            if (!value(into) || into.empty() || into.find_first_not_of("0123456789") != std::string::npos ||
                into.size() > 5 || std::stoi(into) > 65535)
                return arg + " needs a number from 0 to 65535";
        } else if (arg == "--codepage") {
            // The values of the window's code-page box.
            std::string v;
            const auto& box = workbench::codepage_entries();
            if (!value(v) || std::none_of(box.begin(), box.end(), [&](const std::string& e) {
                    return e.substr(0, e.find(' ')) == v;
                }))
                return "--codepage needs a code page of the list: 1250 to 1258, 874, 932, 936, 949, 950 or 65001";
            a.codepage = std::stoi(v);
        } else if (arg == "--answer") {
            std::string v;
            if (!value(v) || (v != "yes" && v != "no")) return "--answer needs yes or no";
            a.answer = v == "yes" ? platform::Answer::yes : platform::Answer::no;
        } else if (arg == "--json") {
            a.json = true;
        } else if (arg == "--unused-colours") {
            a.unused_colours = true;
        } else if (arg == "--non-bitmap-lines") {
            a.non_bitmap_lines = true;
        } else if (arg == "--max-size") {
            std::string v;
            if (!value(v) || v.empty() || v.size() > 4 || v.find_first_not_of("0123456789") != std::string::npos ||
                std::stoi(v) < k_min_max_size)
                return "--max-size needs a number from 12";
            a.max_size = std::stoi(v);
            a.max_size_given = true;
        } else if (arg == "-h" || arg == "--help") {
            return "help";
        } else if (arg == "--version") {
            return "version";
        } else if (arg.size() > 1 && arg[0] == '-') {
            return "unknown option " + arg;
        } else {
            rest.push_back(arg);
        }
    }
    if (rest.size() != 2) return rest.empty() ? "no command" : "expected a command and one file";
    a.command = rest[0];
    a.input = rest[1];
    if (a.command != "info" && a.command != "decode" && a.command != "encode" && a.command != "check" &&
        a.command != "repair")
        return "unknown command " + a.command;
    if (a.json && a.command != "check") return "--json belongs to check";
    if (a.max_size_given && a.command != "check") return "--max-size belongs to check";
    if ((a.unused_colours || a.non_bitmap_lines) && a.command != "repair")
        return "--unused-colours and --non-bitmap-lines belong to repair";
    if (a.command == "check" && (!a.output.empty() || a.utf8 || a.codepage != 0 || !a.fid.empty() || !a.pid.empty()))
        return "check takes no -o, --utf8, --codepage, --fid or --pid";
    if (a.command == "repair") {
        if (!a.unused_colours && !a.non_bitmap_lines) return "repair needs --unused-colours or --non-bitmap-lines";
        const std::string ext = lower_extension(a.output);
        if (ext != ".typ" && ext != ".txt") return "repair needs -o OUT.typ or -o OUT.txt";
        if (ext == ".typ" && a.utf8) return "repair to a TYP takes no --utf8";
    }
    if (a.command == "info" && (!a.output.empty() || a.utf8 || a.codepage != 0))
        return "info takes no -o, --utf8 or --codepage";
    if (a.command == "encode" && a.utf8) return "encode takes no --utf8";
    return {};
}

using text::FileKind;

size_t count_tokens(const std::string& list) {
    size_t n = 0;
    bool in = false;
    for (char c : list) {
        if (c == ' ') {
            in = false;
        } else if (!in) {
            in = true;
            ++n;
        }
    }
    return n;
}

int info(const model::Store& s, FileKind kind) {
    std::string created = s.created;
    const std::string prefix = "Created  ";
    if (created.compare(0, prefix.size(), prefix) == 0) created = created.substr(prefix.size());
    std::string header;
    static const char* hexd = "0123456789abcdef";
    for (int v = s.hdr_len; v > 0 || header.size() < 2; v >>= 4) header.insert(header.begin(), hexd[v & 15]);
    std::printf("format: %s\n", kind == FileKind::prj ? "prj" : kind == FileKind::text ? "text" : "typ");
    std::printf("header: %s\n", header.c_str());
    std::printf("created: %s\n", created.c_str());
    std::printf("codepage: %d\n", s.codepage);
    std::printf("fid: %s\n", s.fid.c_str());
    std::printf("pid: %s\n", s.pid.c_str());
    std::printf("polygons: %d\n", s.pg_n);
    std::printf("lines: %d\n", s.ln_n);
    std::printf("points: %d\n", s.pt_n);
    std::printf("extra points: %d\n", s.pt_nx);
    std::printf("active lines: %d\n", s.ln_nact);
    std::printf("draworder: %zu\n", count_tokens(s.drwlist));
    std::fflush(stdout);
    print_report(s.loadrep, stdout);
    return k_ok;
}

bool id_is_zero(const std::string& field) {
    const size_t a = field.find_first_not_of(" \t");
    if (a == std::string::npos) return true;
    const size_t x = field.find_first_of("xX", a);
    return std::strtoll(field.c_str() + (x == std::string::npos ? a : x + 1), nullptr, x == std::string::npos ? 10 : 16) == 0;
}

// A text is a view of the file, not a save for a device: identifiers of 0
// are written as they are, and said.
int decode(model::Store& s, platform::Prompt& ui, const Args& a) {
    platform::SystemClock clock;
    const int kind = a.utf8 ? text::k_kind_utf8 : 13;
    const bool fid0 = id_is_zero(s.fid), pid0 = id_is_zero(s.pid);
    if (fid0 || pid0)
        std::fprintf(stderr, "report: %s 0 (written as it is; a TYP for a device needs --fid and --pid)\n",
                     fid0 && pid0 ? "FID and PID are" : fid0 ? "FID is" : "PID is");
    if (a.output.empty()) {
        bool ok = text::save_txt(
            s, ui, clock, kind, [](std::string_view piece) { std::fwrite(piece.data(), 1, piece.size(), stdout); }, false);
        std::fflush(stdout);
        return ok ? k_ok : k_failed;
    }
    platform::AtomicWriter out(a.output);
    if (!out.ok()) {
        ui.message("Cannot write " + a.output + ": " + out.error());
        return k_failed;
    }
    bool ok = text::save_txt(s, ui, clock, kind, [&](std::string_view piece) { out.write(piece); }, false);
    if (!ok) return k_failed;  // the writer's destructor removes the temporary file
    if (!out.commit()) {
        ui.message("Cannot write " + a.output + ": " + out.error());
        return k_failed;
    }
    return k_ok;
}

// The checks of the window's TYP save, the typed fields being --fid and --pid
// and the answers --answer's.
int encode(model::Store& s, platform::Prompt& ui, const Args& a) {
    if (!encode_store(s, ui)) return k_failed;
    if (a.output.empty()) {
        std::fwrite(s.curf.data(), 1, s.curf.size(), stdout);
        std::fflush(stdout);
        return k_ok;
    }
    return typ::SaveFile(s, ui, a.output) ? k_ok : k_failed;
}

}  // namespace

bool load_input(model::Store& s, platform::Prompt& ui, const std::string& path, FileKind* kind_out) {
    if (!platform::file_exists(path)) {
        ui.message(path + " doesn't exist");
        return false;
    }
    if (!workbench::chkldop(s, ui)) return false;
    std::string error;
    auto data = platform::read_file(path, &error);
    if (!data) {
        ui.message("Cannot read " + path + ": " + error);
        return false;
    }
    const FileKind kind = text::file_kind(*data, path);
    if (kind_out) *kind_out = kind;
    if (const std::string why = text::unreadable_reason(*data, kind); !why.empty()) {
        std::fprintf(stderr, "korvex-cli: %s: %s\n", path.c_str(), why.c_str());
        return false;
    }
    if (kind == FileKind::prj) {
        text::load_prj_data(s, ui, path, *data);
    } else if (kind == FileKind::text) {
        // A text of a draw order alone is still a project, so "[_id]" is not required.
        text::load_txt(s, ui, path, std::move(*data), false, false);
    } else {
        typ::open_typ_bytes(s, ui, std::move(*data), path);
    }
    return true;
}

bool encode_store(model::Store& s, platform::Prompt& ui) {
    platform::SystemClock clock;
    const integration::Messages msgs;
    if (!workbench::has_data(s)) {
        ui.message(msgs.get_msg(k_msg_no_data));
        return false;
    }
    if (!workbench::check_ids(s, ui, msgs, true).ok) return false;
    if (!typ::save_typ(s, ui, clock, true)) return false;
    print_report(s.loadrep, stderr);
    return true;
}

void print_report(const std::string& report, std::FILE* to) {
    size_t start = 0;
    while (start < report.size()) {
        size_t end = report.find('\n', start);
        if (end == std::string::npos) end = report.size();
        std::string line = report.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) std::fprintf(to, "report: %s\n", line.c_str());
        start = end + 1;
    }
}

int run(int argc, char** argv) {
    if (argc >= 2 && std::string(argv[1]) == "img") return run_img(argc, argv);
    Args a;
    if (std::string why = parse(argc, argv, a); !why.empty()) {
        if (why == "version") {
            std::printf("korvex-cli %s\n", KORVEX_VERSION);
            return k_ok;
        }
        if (why == "help") {
            std::fputs(k_usage_text, stdout);
            return k_ok;
        }
        return usage(why);
    }

    // A pipeline tells a file it cannot read from a file with findings.
    const bool pipeline = a.command == "check" || a.command == "repair";
    const int unreadable = pipeline ? k_usage : k_failed;
    LoadPrompt ui(a.answer);
    model::Store s;
    // The file as it stands: the window's completion of the draw order would
    // hide polygons that are not drawn, and a repair changes only what it is
    // asked to.
    if (pipeline) s.opt.complete_draworder = false;
    s.ldopts = a.ldopts;
    s.opt.show_offsets = a.offsets;
    model::newproject(s);

    FileKind kind = FileKind::typ;
    if (!load_input(s, ui, a.input, &kind)) return unreadable;
    if (a.command == "info") return info(s, kind);
    print_report(s.loadrep, stderr);
    if (a.command == "check") return check(s, a.json, a.max_size, ui.dropped_draworder());
    // As if typed into the identifier fields before saving.
    if (!a.fid.empty()) s.fid = a.fid;
    if (!a.pid.empty()) s.pid = a.pid;
    if (a.codepage != 0) s.codepage = a.codepage;
    if (a.command == "repair") {
        repair(s, a.unused_colours, a.non_bitmap_lines);
        if (lower_extension(a.output) == ".txt") return decode(s, ui, a);
    }
    if (a.command == "decode") return decode(s, ui, a);
    return encode(s, ui, a);
}

}  // namespace korvex::cli

// korvex-cli img: the TYP inside a map container. list shows the subfiles,
// extract writes one TYP out, replace puts a TYP (or a text, encoded as the
// encode command does) in the place of the container's TYP.
#include <cstdio>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "integration/img_container.h"
#include "integration/img_replace.h"
#include "platform/files.h"
#include "text/file_kind.h"
#include "workbench/load_options.h"

namespace korvex::cli {

namespace {

struct ImgArgs {
    std::string command, map, file, output, typ_name;
    std::string fid, pid;
    platform::Answer answer = platform::Answer::yes;
};

// A TYP's family and product id.
constexpr size_t k_fid = 0x2f, k_pid = 0x31;

int img_usage(const std::string& why) {
    std::fprintf(stderr, "korvex-cli: %s\n", why.c_str());
    std::fputs(usage_text(), stderr);
    return k_usage;
}

// A bad container is a wrong argument: exit 2, as for a wrong command.
int refuse(const std::string& why) {
    std::fprintf(stderr, "korvex-cli: %s\n", why.c_str());
    return k_usage;
}

std::string parse_img(int argc, char** argv, ImgArgs& a) {
    std::vector<std::string> rest;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&](std::string& into) -> bool {
            if (i + 1 >= argc) return false;
            into = argv[++i];
            return true;
        };
        if (arg == "-o" || arg == "--output") {
            if (!value(a.output)) return "-o needs a file name";
        } else if (arg == "--typ") {
            if (!value(a.typ_name)) return "--typ needs a subfile name such as 0000XMAP.TYP";
        } else if (arg == "--fid" || arg == "--pid") {
            std::string& into = arg == "--fid" ? a.fid : a.pid;
            if (!value(into) || into.empty() || into.find_first_not_of("0123456789") != std::string::npos ||
                into.size() > 5 || std::stoi(into) > 65535)
                return arg + " needs a number from 0 to 65535";
        } else if (arg == "--answer") {
            std::string v;
            if (!value(v) || (v != "yes" && v != "no")) return "--answer needs yes or no";
            a.answer = v == "yes" ? platform::Answer::yes : platform::Answer::no;
        } else if (arg.size() > 1 && arg[0] == '-') {
            return "unknown option " + arg;
        } else {
            rest.push_back(arg);
        }
    }
    if (rest.size() < 2) return "img needs list, extract or replace and a map file";
    a.command = rest[0];
    a.map = rest[1];
    if (a.command == "list") {
        if (rest.size() != 2 || !a.output.empty()) return "img list takes a map file alone";
    } else if (a.command == "extract") {
        if (rest.size() > 3) return "img extract takes a map file and one TYP name";
        if (rest.size() == 3) a.typ_name = rest[2];
    } else if (a.command == "replace") {
        if (rest.size() != 3) return "img replace takes a map file and one TYP or text file";
        a.file = rest[2];
    } else {
        return "unknown img command " + a.command;
    }
    return {};
}

int list(const std::string& map) {
    std::string error;
    const auto c = integration::read_container(map, error);
    if (!c) return refuse(error);
    std::printf("%s: block size %u, %zu subfiles\n", map.c_str(), c->block_size, c->subfiles.size());
    for (const auto& f : c->subfiles) std::printf("%s\n", integration::subfile_line(f).c_str());
    std::fflush(stdout);
    if (c->typ_indexes().empty()) return refuse(map + " holds no TYP file.");
    return k_ok;
}

int extract(const ImgArgs& a) {
    std::string error;
    const auto c = integration::read_typ_container(a.map, error);
    if (!c) return refuse(error);
    const int at = integration::choose_typ(*c, a.typ_name, error);
    if (at < 0) return refuse(error);
    std::string bytes;
    if (!integration::read_subfile(*c, static_cast<size_t>(at), bytes, error)) {
        std::fprintf(stderr, "korvex-cli: %s\n", error.c_str());
        return k_failed;
    }
    if (a.output.empty()) {
        std::fwrite(bytes.data(), 1, bytes.size(), stdout);
        std::fflush(stdout);
        return k_ok;
    }
    if (!platform::write_file_atomic(a.output, bytes, &error)) {
        std::fprintf(stderr, "korvex-cli: Cannot write %s: %s\n", a.output.c_str(), error.c_str());
        return k_failed;
    }
    return k_ok;
}

void put_id(std::string& typ, size_t at, const std::string& id) {
    const int v = std::stoi(id);
    typ[at] = static_cast<char>(v & 0xff);
    typ[at + 1] = static_cast<char>(v >> 8);
}

uint16_t id_at(const std::string& typ, size_t at) {
    return static_cast<uint16_t>(static_cast<uint8_t>(typ[at]) | static_cast<uint8_t>(typ[at + 1]) << 8);
}

// The TYP to put in: a TYP file's own bytes (with --fid and --pid written
// in), or a text or project encoded with them.
bool new_typ(const ImgArgs& a, std::string& typ) {
    std::string error;
    auto data = platform::read_file(a.file, &error);
    if (!data) {
        std::fprintf(stderr, "korvex-cli: Cannot read %s: %s\n", a.file.c_str(), error.c_str());
        return false;
    }
    if (text::file_kind(*data, a.file) == text::FileKind::typ) {
        if (const std::string why = text::not_typ_reason(*data); !why.empty()) {
            std::fprintf(stderr, "korvex-cli: %s: %s\n", a.file.c_str(), why.c_str());
            return false;
        }
        typ = std::move(*data);
        if (!a.fid.empty()) put_id(typ, k_fid, a.fid);
        if (!a.pid.empty()) put_id(typ, k_pid, a.pid);
        return true;
    }
    platform::ConsolePrompt ui(a.answer);
    model::Store s;
    model::newproject(s);
    if (!load_input(s, ui, a.file)) return false;
    print_report(s.loadrep, stderr);
    if (!a.fid.empty()) s.fid = a.fid;
    if (!a.pid.empty()) s.pid = a.pid;
    if (!encode_store(s, ui)) return false;
    typ = std::move(s.curf);
    return true;
}

int replace(const ImgArgs& a) {
    std::string error;
    const auto c = integration::read_typ_container(a.map, error);
    if (!c) return refuse(error);
    const int at = integration::choose_typ(*c, a.typ_name, error);
    if (at < 0) return refuse(error);
    std::string typ;
    if (!new_typ(a, typ)) return k_failed;
    // A device applies a TYP only to maps of its family.
    const auto& old = c->subfiles[static_cast<size_t>(at)];
    if (old.has_ids && typ.size() > k_pid + 1 && id_at(typ, k_fid) != old.fid)
        std::fprintf(stderr,
                     "report: %s has family id %u, the map's TYP %u: a device ignores a TYP of another family "
                     "(--fid sets it)\n",
                     a.file.c_str(), id_at(typ, k_fid), old.fid);
    const std::string out = a.output.empty() ? a.map : a.output;
    if (!integration::replace_subfile(*c, static_cast<size_t>(at), typ, out, error)) {
        std::fprintf(stderr, "korvex-cli: %s\n", error.c_str());
        return k_failed;
    }
    return k_ok;
}

}  // namespace

int run_img(int argc, char** argv) {
    ImgArgs a;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "-h" || arg == "--help") {
            std::fputs(usage_text(), stdout);
            return k_ok;
        }
    }
    if (const std::string why = parse_img(argc, argv, a); !why.empty()) return img_usage(why);
    if (!platform::file_exists(a.map)) {
        std::fprintf(stderr, "korvex-cli: %s doesn't exist\n", a.map.c_str());
        return k_failed;
    }
    if (a.command == "list") return list(a.map);
    if (a.command == "extract") return extract(a);
    return replace(a);
}

}  // namespace korvex::cli

// mkgmap, the OSM map compiler, run as a black box by the interop suites,
// and the view of an element that both sides are compared in.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "platform/files.h"
#include "support/file_params.h"
#include "support/harness.h"
#include "support/shell_run.h"

namespace korvex::testing::interop {

namespace fs = std::filesystem;

inline const char* const k_jar = "/usr/share/mkgmap/mkgmap.jar";

#ifdef _WIN32
inline bool have_mkgmap() { return false; }  // the Debian package's jar is not there
#else
inline bool have_mkgmap() { return fs::exists(k_jar) && std::system("java -version >/dev/null 2>&1") == 0; }
#endif

struct Source {
    std::string name;  // file stem: names the TYP too
    std::string text;
    std::string fid;
    std::string codepage;
};

struct Compiled {
    int status = -1;
    std::string log;                           // of the whole run
    std::map<std::string, std::string> typ;    // by source name
};

// One run of mkgmap over several texts: the options in front of each file
// hold for it, and one start of the compiler is most of the time a file takes.
inline Compiled mkgmap_all(const std::vector<Source>& sources) {
    Compiled c;
    static int run = 0;
    const fs::path dir =
        fs::temp_directory_path() / ("korvex-mkgmap-" + std::to_string(::getpid()) + "-" + std::to_string(++run));
    fs::remove_all(dir);
    fs::create_directories(dir);
    // mkgmap's default logging hides its warnings; this configuration shows
    // every warning and error on the console.
    platform::write_file_atomic((dir / "log.properties").string(),
                                "handlers=java.util.logging.ConsoleHandler\n.level=WARNING\n"
                                "java.util.logging.ConsoleHandler.level=WARNING\n");
    std::string cmd = "cd '" + dir.string() + "' && java -Dlog.config=log.properties -jar " + k_jar +
                      " --output-dir='" + dir.string() + "'";
    for (const Source& s : sources) {
        platform::write_file_atomic((dir / (s.name + ".txt")).string(), s.text);
        cmd += " --code-page=" + s.codepage + " --family-id=" + s.fid + " '" + s.name + ".txt'";
    }
    cmd += " 2>&1";
    ShellRun done = run_shell(cmd);
    c.log = std::move(done.out);
    c.status = done.status;
    for (const Source& s : sources) c.typ[s.name] = read_bytes((dir / (s.name + ".typ")).string());
    fs::remove_all(dir);
    return c;
}

// Lines of the log that report a problem; the closing counters and the note
// that a run of several files uses two threads do not.
inline std::string complaints(const std::string& log) {
    static const std::regex bad("^(WARNING|SEVERE|ERROR)|exception", std::regex::icase);
    std::string out;
    size_t start = 0;
    while (start < log.size()) {
        size_t end = log.find('\n', start);
        if (end == std::string::npos) end = log.size();
        const std::string line = log.substr(start, end - start);
        if (std::regex_search(line, bad) && line.find("Number of ") == std::string::npos &&
            line.find("Setting max-jobs") == std::string::npos)
            out += line + "\n";
        start = end + 1;
    }
    return out;
}

// One run of the sources make gives of the files.
inline Compiled mkgmap_files(const std::vector<std::string>& files, Source (*make)(const std::string&, model::Store&)) {
    std::vector<Source> all;
    for (const std::string& path : files) {
        model::Store s;
        all.push_back(make(path, s));
    }
    return mkgmap_all(all);
}

// What a run of many sources says of one of them: the run itself when it
// went cleanly, else a run of the source alone, which tells whether the
// complaint or the failure was this source's.
inline Compiled run_of(const Compiled& together, const Source& source) {
    if (together.status == 0 && complaints(together.log).empty()) return together;
    return mkgmap_all({source});
}

// The element sections of a text, each without comments, in file order.
inline std::vector<std::string> elements(const std::string& text) {
    std::vector<std::string> out;
    const std::string body = without_comments(text);
    size_t at = body.find("[_polygon]");
    if (at == std::string::npos) at = body.find("[_line]");
    if (at == std::string::npos) at = body.find("[_point]");
    while (at != std::string::npos) {
        size_t end = body.find("[end]", at);
        if (end == std::string::npos) break;
        out.push_back(body.substr(at, end - at));
        at = body.find("[_", end);
    }
    return out;
}

// An element as a device sees it: pictures painted (each row lists the colour
// of every pixel, so symbols, table order and bit sense do not matter),
// opacity 0 as opaque and 15 as transparent, labels as a sorted set without
// empty strings, the default font left out.
inline std::string painted(const std::string& element) {
    std::string out;
    std::vector<std::string> labels;
    std::vector<std::pair<std::string, std::string>> colours;
    size_t cpp = 1;
    bool in_picture = false;
    bool rows_seen = false;
    auto close_picture = [&] {
        if (in_picture && !rows_seen)
            for (auto& c : colours) out += "colour " + c.second + "\n";
        in_picture = false;
    };
    for (const std::string& line : lines_of(element)) {
        const size_t xpm = line.find("Xpm=\"");
        if (xpm != std::string::npos) {
            close_picture();
            std::istringstream head(line.substr(xpm + 5));
            size_t w = 0, h = 0, n = 0;
            head >> w >> h >> n >> cpp;
            if (cpp == 0) cpp = 1;
            colours.clear();
            in_picture = true;
            rows_seen = false;
            out += line.substr(0, xpm) + "Xpm " + std::to_string(w) + "x" + std::to_string(h) + "\n";
            continue;
        }
        if (in_picture && line.size() > 2 && line[0] == '"') {
            const size_t close = line.find('"', 1);
            const std::string body = line.substr(1, close == std::string::npos ? std::string::npos : close - 1);
            if (body.size() > cpp + 3 && body.compare(cpp, 3, " c ") == 0) {
                std::string value = body.substr(cpp + 3);
                const size_t alpha = line.find("alpha=");
                const std::string a = alpha == std::string::npos ? "0" : line.substr(alpha + 6);
                if (a == "15") value = "none";
                else if (a != "0" && value != "none") value += "/" + a;
                colours.emplace_back(body.substr(0, cpp), value);
                continue;
            }
            rows_seen = true;
            std::string row;
            if (colours.empty() && body[0] == '#') {
                // A picture without palette: the row is the pixels' colours.
                for (size_t k = 0; k + 7 <= body.size(); k += 7) row += body.substr(k, 7) + " ";
                out += row + "\n";
                continue;
            }
            for (size_t k = 0; k + cpp <= body.size(); k += cpp) {
                std::string value = "?";
                for (auto& c : colours)
                    if (c.first == body.substr(k, cpp)) value = c.second;
                row += value + " ";
            }
            out += row + "\n";
            continue;
        }
        close_picture();
        // The default font and no custom colour say nothing, however stored.
        if (line.rfind("ExtendedLabels=", 0) == 0 || line == "FontStyle=Default" || line == "CustomColor=No")
            continue;
        if (line.rfind("String", 0) == 0) {
            const size_t eq = line.find('=');
            const size_t comma = line.find(',');
            if (comma != std::string::npos && comma + 1 < line.size())
                labels.push_back(line.substr(eq + 1));
            continue;
        }
        out += line + "\n";
    }
    close_picture();
    std::sort(labels.begin(), labels.end());
    for (auto& l : labels) out += "label " + l + "\n";
    return out;
}

// mkgmap drops fully transparent entries (alpha=15) and merges repeated
// ones from a point's palette in some cases, but keeps the old colour count
// in the record, which scrambles the picture and what follows it. Such
// elements are compared only by their type and picture size.
inline bool mkgmap_scrambles(const std::string& element) {
    std::vector<std::string> seen;
    for (const std::string& line : lines_of(element)) {
        if (line.find("Xpm=") != std::string::npos) {
            seen.clear();
            continue;
        }
        const size_t c = line.find(" c ");
        if (line.empty() || line[0] != '"' || c == std::string::npos) continue;
        if (line.find("alpha=15") != std::string::npos) return true;
        std::string value = line.substr(c);
        if (std::find(seen.begin(), seen.end(), value) != seen.end()) return true;
        seen.push_back(value);
    }
    return false;
}

inline std::string keys_only(const std::string& painted_text) {
    std::string out;
    for (const std::string& line : lines_of(painted_text))
        if (line.rfind("[_", 0) == 0 || line.rfind("Type=", 0) == 0 || line.find("Xpm ") != std::string::npos)
            out += line + "\n";
    return out;
}

// KORVEX_DUMP=dir keeps both painted texts of a comparison for a closer look.
inline void dump_painted(const std::string& stem, const std::vector<std::string>& ours,
                         const std::vector<std::string>& theirs) {
    const char* dump = std::getenv("KORVEX_DUMP");
    if (!dump) return;
    std::string pa, pb;
    for (const auto& e : ours) pa += painted(e);
    for (const auto& e : theirs) pb += painted(e);
    platform::write_file_atomic(std::string(dump) + "/" + stem + ".ours", pa);
    platform::write_file_atomic(std::string(dump) + "/" + stem + ".mkgmap", pb);
}

}  // namespace korvex::testing::interop

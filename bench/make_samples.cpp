// Builds the bundled sample TYP from its hand-drawn text form:
//   korvex-make-samples DIR    reads DIR/sample.txt, writes DIR/sample.typ
// The text is the source; anything the reader reports about it is an error.
#include <cstdio>
#include <string>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "text/load_driver.h"
#include "typ/encoder.h"

using namespace korvex;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: korvex-make-samples DIR\n");
        return 2;
    }
    const std::string dir = argv[1];
    const std::string source = dir + "/sample.txt";
    std::string error;
    auto text = platform::read_file(source, &error);
    if (!text) {
        std::fprintf(stderr, "korvex-make-samples: %s: %s\n", source.c_str(), error.c_str());
        return 1;
    }
    platform::ConsolePrompt ui;
    model::Store s;
    model::newproject(s);
    if (!text::load_txt(s, ui, source, std::move(*text), false, true)) return 1;
    if (!s.loadrep.empty()) {
        std::fprintf(stderr, "korvex-make-samples: %s:\n%s\n", source.c_str(), s.loadrep.c_str());
        return 1;
    }
    // A fixed date keeps the committed file stable.
    platform::FixedClock clock({2026, 11, 22, 12, 0, 0});
    if (!typ::save_typ(s, ui, clock, false)) return 1;
    if (!platform::write_file_atomic(dir + "/sample.typ", s.curf)) return 1;
    std::printf("sample.typ: %zu bytes from sample.txt\n", s.curf.size());
    return 0;
}

// Writes the bundled sample: data/samples/sample.typ and its text form.
//   korvex-make-samples OUT_DIR
#include <cstdio>
#include <string>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "support/sample_builder.h"
#include "text/text_writer.h"
#include "typ/decoder.h"
#include "typ/encoder.h"

using namespace korvex;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: korvex-make-samples OUT_DIR\n");
        return 2;
    }
    const std::string dir = argv[1];
    // A fixed date keeps the committed files stable.
    platform::FixedClock clock({2026, 11, 22, 12, 0, 0});
    platform::ConsolePrompt ui;
    model::Store s;
    samples::build_sample(s);
    if (!typ::save_typ(s, ui, clock, false)) return 1;
    const std::string typ_bytes = s.curf;
    if (!platform::write_file_atomic(dir + "/sample.typ", typ_bytes)) return 1;

    // The text form is what the decoder makes of the file we just wrote.
    model::Store d;
    model::newproject(d);
    typ::open_typ_bytes(d, ui, typ_bytes, dir + "/sample.typ");
    std::string text;
    text::save_txt(d, ui, clock, 13, [&](std::string_view piece) { text.append(piece); });
    if (!platform::write_file_atomic(dir + "/sample.txt", text)) return 1;
    std::printf("sample.typ: %zu bytes, sample.txt: %zu bytes\n", typ_bytes.size(), text.size());
    return 0;
}

#include "editor/standard_palettes.h"

#include "editor/palette_file.h"
#include "editor/raster.h"
#include "platform/files.h"

namespace korvex::editor {

namespace {

std::vector<uint32_t> from_list(const char* list) { return parse_tpal(list); }

}  // namespace

std::vector<uint32_t> palette_256() {
    static const int reds[] = {0x00, 0x39, 0x7b, 0xbd, 0xff};
    static const int greens[] = {0x00, 0x30, 0x65, 0x95, 0xca, 0xff};
    static const int blues[] = {0x00, 0x20, 0x41, 0x6a, 0x8B, 0xb4, 0xd5, 0xff};
    std::vector<uint32_t> out;
    out.reserve(254);
    for (int g : greens)
        for (int r : reds)
            for (int b : blues) out.push_back(rgb(static_cast<uint32_t>(r), static_cast<uint32_t>(g), static_cast<uint32_t>(b)));
    const std::vector<uint32_t> greys = from_list(
        "101010,202020,313131,414141,525252,626262,737373,838383,949494,a4a4a4,b4b4b4,c5c5c5,d5d5d5,e6e6e6");
    out.insert(out.end(), greys.begin(), greys.end());
    return out;
}

std::vector<uint32_t> palette_64() {
    static const uint32_t levels[] = {0x00, 0x55, 0xAA, 0xFF};
    std::vector<uint32_t> out;
    for (uint32_t r : levels)
        for (uint32_t g : levels)
            for (uint32_t b : levels) out.push_back(rgb(r, g, b));
    return out;
}

std::vector<uint32_t> palette_16() {
    return from_list("FFFFFF,AAAAAA,555555,000000,FF0000,AA0000,FF5500,FFAA00,00FF00,00AA00,00AAFF,0000FF,AA00FF,FF00FF");
}

std::vector<uint32_t> standard_palette(ChooserMode mode) {
    switch (mode) {
    case ChooserMode::c256: return palette_256();
    case ChooserMode::c64: return palette_64();
    case ChooserMode::c16: return palette_16();
    case ChooserMode::custom: break;
    }
    return {};
}

std::string standard_file_name(ChooserMode mode) {
    switch (mode) {
    case ChooserMode::c256: return "256.tpal";
    case ChooserMode::c64: return "64.tpal";
    case ChooserMode::c16: return "16.tpal";
    case ChooserMode::custom: break;
    }
    return {};
}

std::string chooser_caption(ChooserMode mode) {
    switch (mode) {
    case ChooserMode::c256: return "Garmin-256";
    case ChooserMode::c64: return "Garmin-64";
    case ChooserMode::c16: return "Garmin-16";
    case ChooserMode::custom: break;
    }
    return "Garmin-C";
}

bool ensure_standard_palettes(const std::string& folder) {
    bool ok = true;
    for (ChooserMode m : {ChooserMode::c256, ChooserMode::c64, ChooserMode::c16}) {
        const std::string path = folder + "/" + standard_file_name(m);
        if (platform::file_exists(path)) continue;
        ok = save_tpal(path, standard_palette(m)) && ok;
    }
    return ok;
}

}  // namespace korvex::editor

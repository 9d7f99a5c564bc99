// Pictures into the icon editor: a photo shrunk to an icon, its import into
// a true-colour point of 128 x 128, and a palette point of 128 x 128
// stretched to half its size and back.
#include <benchmark/benchmark.h>

#include "editor/canvas.h"
#include "editor/image_import.h"
#include "editor/image_raster.h"
#include "editor/point_size.h"
#include "platform/prompt.h"
#include "support/striped_point.h"

using namespace korvex;
using namespace korvex::editor;

namespace {

using platform::QuietPrompt;

// A 1024 x 768 picture of smooth gradients with some transparency.
platform::Image photo() {
    platform::Image img{1024, 768, {}};
    img.argb.reserve(1024 * 768);
    for (uint32_t y = 0; y < 768; ++y)
        for (uint32_t x = 0; x < 1024; ++x)
            img.argb.push_back(((x + y) % 7 == 0 ? 0x80u : 0xFFu) << 24 | (x / 4) << 16 | (y / 3) << 8 | ((x ^ y) & 0xFF));
    return img;
}

void BM_StretchPhotoToIcon(benchmark::State& state) {
    const platform::Image img = photo();
    for (auto _ : state) benchmark::DoNotOptimize(stretch_image(img, 128, 96));
}
BENCHMARK(BM_StretchPhotoToIcon)->Unit(benchmark::kMillisecond);

void BM_ImportPhotoIntoTrueColourPoint(benchmark::State& state) {
    QuietPrompt ui;
    const platform::Image img = photo();
    for (auto _ : state) {
        EditorSession e;
        e.curclass = 2;
        e.palette.colours = {0xFFFFFF, 0};
        resize_picture(e, 128, 128);
        ToolEngine t(e, ui);
        benchmark::DoNotOptimize(import_picture(e, t, ui, img));
    }
}
BENCHMARK(BM_ImportPhotoIntoTrueColourPoint)->Unit(benchmark::kMillisecond);

void BM_ResizePalettePoint(benchmark::State& state) {
    QuietPrompt ui;
    EditorSession e = samples::striped_point();
    int k = 0;
    for (auto _ : state) {
        const int side = ++k % 2 ? 64 : 128;
        benchmark::DoNotOptimize(changepoisize(e, ui, side, side, true));
    }
}
BENCHMARK(BM_ResizePalettePoint)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

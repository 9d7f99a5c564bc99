// Text loading throughput over a generated text of about 20 MB (64x64 points
// of up to 255 colours, night pictures, every polygon and line scheme,
// labels) and over the corpus texts; the section and draw order sorts and a
// whole load on 20,000 elements, which must grow as n log n, not n squared.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "support/sample_builder.h"
#include "text/load_driver.h"
#include "text/text_writer.h"
#include "typ/decoder.h"
#include "typ/draw_order.h"
#include "typ/encoder.h"

using namespace korvex;

namespace {

using platform::QuietPrompt;

// A TYP of this size gives a text of about 20 MB.
constexpr int64_t k_typ_target = 9 * 1000 * 1000;
constexpr int k_many = 20000;

const platform::Clock& text_clock() {
    static const platform::FixedClock clock({2026, 1, 2, 3, 4, 5});
    return clock;
}

const std::string& large_text() {
    static const std::string text = [] {
        const platform::Clock& clock = text_clock();
        QuietPrompt ui;
        model::Store built;
        samples::build_large(built, k_typ_target);
        typ::save_typ(built, ui, clock, false);
        // The text is written from the decoded file, as a user's would be.
        model::Store s;
        typ::open_typ_bytes(s, ui, std::move(built.curf), "/bench/large.typ");
        std::string out;
        text::save_txt(s, ui, clock, 13, [&](std::string_view piece) { out += piece; });
        return out;
    }();
    return text;
}

std::string hex4(int v) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%04X", v);
    return buf;
}

// Five-digit codes (type, subtype 0..31), all different, in falling order
// so that every sort has work to do.
int nth_code(int k) { return 0x10000 + ((k_many - 1 - k) % 0x8000 / 32) * 0x100 + (k_many - 1 - k) % 32; }

// Times load_txt alone: fresh tables, the copy the loader takes, and the
// freeing of both stay outside the timing. check looks at each result.
template <class Check>
void time_loads(benchmark::State& state, const std::string& text, const char* path, Check check) {
    for (auto _ : state) {
        state.PauseTiming();
        auto s = std::make_unique<model::Store>();
        std::string copy = text;
        QuietPrompt ui;
        state.ResumeTiming();
        text::load_txt(*s, ui, path, std::move(copy), false, true);
        state.PauseTiming();
        check(*s);
        s.reset();
        state.ResumeTiming();
    }
}

void BM_LoadLargeText(benchmark::State& state) {
    const std::string& text = large_text();
    time_loads(state, text, "/bench/large.txt", [&](const model::Store& s) {
        benchmark::DoNotOptimize(s.pt_n);
        if (s.pt_n == 0) state.SkipWithError("no points loaded");
    });
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
    state.counters["text_MB"] = static_cast<double>(text.size()) / 1e6;
    // A fast load is worth nothing if it reads differently: the tables must
    // write the text they were read from.
    model::Store s;
    QuietPrompt ui;
    text::load_txt(s, ui, "/bench/large.txt", text, false, true);
    std::string again;
    text::save_txt(s, ui, text_clock(), 13, [&](std::string_view piece) { again += piece; });
    // The decoder writes a blank behind a line's marker, the reader does not;
    // labels read as UTF-8 make the save sign the file.
    if (again.starts_with("\xEF\xBB\xBF")) again.erase(0, 3);
    std::string want = text;
    for (size_t p = 0; (p = want.find("[_line] \r\n", p)) != std::string::npos;) want.erase(p + 7, 1);
    if (again != want) state.SkipWithError("the loaded text writes back differently");
}

void BM_SortText20000(benchmark::State& state) {
    std::string text = "[_id]\r\nFID=1\r\n[end]\r\n";
    for (int k = 0; k < k_many / 2; ++k)
        text += "[_polygon]\r\nType=0x" + hex4(k_many - k) + "\r\nXpm=\"0 0 1 0\"\r\n\"1 c #112233\"\r\n[end]\r\n";
    for (int k = 0; k < k_many / 2; ++k)
        text += "[_line]\r\nType=0x" + hex4(k_many - k) + "\r\nLineWidth=2\r\nXpm=\"0 0 1 0\"\r\n\"1 c #112233\"\r\n[end]\r\n";
    size_t out = 0;
    for (auto _ : state) out = text::sorttxt(text).size();
    if (out < text.size()) state.SkipWithError("sections lost");
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * k_many);
}

void BM_SortDrawOrder20000(benchmark::State& state) {
    std::string list;
    for (int k = 0; k < k_many; ++k) {
        char buf[24];
        std::snprintf(buf, sizeof buf, " %X,%d", nth_code(k), 1 + k % 7);
        list += buf;
    }
    model::Store s;
    for (auto _ : state) {
        state.PauseTiming();
        s.drwlist = list;
        state.ResumeTiming();
        typ::sort_drwlist(s);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * k_many);
}

void BM_DrawOrderFromText20000(benchmark::State& state) {
    std::string text = "[_drawOrder]\r\n";
    for (int k = 0; k < k_many; ++k) {
        char buf[40];
        std::snprintf(buf, sizeof buf, "Type=0x%X,%d ;level\r\n", nth_code(k), 1 + k % 7);
        text += buf;
    }
    text += "[end]\r\n";
    model::Store s;
    model::procredim(s, model::k_polygons, k_many);
    s.pg_n = k_many;
    for (int k = 0; k < k_many; ++k) {
        char buf[16];
        std::snprintf(buf, sizeof buf, "0x%X", nth_code(k));
        s.pg_typ[static_cast<size_t>(k)] = buf;
    }
    QuietPrompt ui;
    for (auto _ : state) {
        text::draworder_fromtxt(s, ui, text);
        benchmark::DoNotOptimize(s.drwlist.data());
    }
    if (s.pg_drw[0].empty()) state.SkipWithError("no level given");
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * k_many);
}

// A whole load of many small polygons with a level each: the polygon pass,
// the draw order and its duplicate check together.
void BM_LoadPolygons20000(benchmark::State& state) {
    std::string text = "[_id]\r\nFID=1\r\n[end]\r\n[_drawOrder]\r\n";
    std::string polygons;
    for (int k = 0; k < k_many; ++k) {
        char buf[48];
        std::snprintf(buf, sizeof buf, "Type=0x%X,%d\r\n", nth_code(k), 1 + k % 7);
        text += buf;
        std::snprintf(buf, sizeof buf, "[_polygon]\r\nType=0x%X\r\n", nth_code(k));
        polygons += buf;
        polygons += "String1=0x04,Area\r\nXpm=\"0 0 1 0\"\r\n\"1 c #112233\"\r\n[end]\r\n";
    }
    text += "[end]\r\n" + polygons;
    time_loads(state, text, "/bench/polygons.txt", [&](const model::Store& s) {
        if (s.pg_n != k_many) state.SkipWithError("polygons lost");
    });
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * k_many);
}

// The real texts, written for mkgmap: mostly polygons and lines, small
// points, LF line ends.
void BM_LoadCorpusTexts(benchmark::State& state) {
    namespace fs = std::filesystem;
    const fs::path dir = fs::path(KORVEX_SOURCE_DIR).parent_path() / "shared" / "corpus" / "txt";
    std::vector<std::string> texts;
    if (fs::is_directory(dir))
        for (const auto& e : fs::directory_iterator(dir))
            if (e.path().extension() == ".txt") texts.push_back(platform::read_file(e.path().string()).value_or(""));
    int64_t total = 0;
    for (const std::string& t : texts) total += static_cast<int64_t>(t.size());
    if (texts.empty()) state.SkipWithError("no corpus");
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<std::string> copies = texts;
        std::vector<model::Store> stores(texts.size());
        QuietPrompt ui;
        state.ResumeTiming();
        for (size_t k = 0; k < texts.size(); ++k) text::load_txt(stores[k], ui, "/bench/corpus.txt", std::move(copies[k]), false, false);
        state.PauseTiming();
        stores.clear();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
}

}  // namespace

BENCHMARK(BM_LoadLargeText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadCorpusTexts)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SortText20000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SortDrawOrder20000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawOrderFromText20000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadPolygons20000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();

// Decoder, encoder and text writer throughput over a generated file of more
// than 20 MB and over the corpus; peak memory of the command line on the
// large file.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "support/sample_builder.h"
#include "text/text_writer.h"
#include "typ/decoder.h"
#include "typ/encoder.h"

using namespace korvex;

namespace {

using platform::QuietPrompt;

constexpr int64_t k_target = 22 * 1000 * 1000;

const platform::FixedClock& clock() {
    static platform::FixedClock c({2026, 1, 2, 3, 4, 5});
    return c;
}

const std::string& large_file() {
    static const std::string bytes = [] {
        model::Store s;
        QuietPrompt ui;
        samples::build_large(s, k_target);
        typ::save_typ(s, ui, clock(), false);
        return s.curf;
    }();
    return bytes;
}

std::vector<std::string> corpus() {
    std::vector<std::string> out;
    namespace fs = std::filesystem;
    fs::path dir = fs::path(KORVEX_SOURCE_DIR).parent_path() / "shared" / "corpus" / "typ";
    if (!fs::is_directory(dir)) return out;
    for (auto& e : fs::directory_iterator(dir))
        if (e.path().extension() == ".typ") out.push_back(platform::read_file(e.path().string()).value_or(""));
    return out;
}

void decode(model::Store& s, std::string bytes) {
    QuietPrompt ui;
    model::newproject(s);
    typ::open_typ_bytes(s, ui, std::move(bytes), "/bench/file.typ");
}

void BM_DecodeLarge(benchmark::State& state) {
    const std::string& bytes = large_file();
    for (auto _ : state) {
        state.PauseTiming();
        std::string copy = bytes;
        auto s = std::make_unique<model::Store>();
        state.ResumeTiming();
        decode(*s, std::move(copy));
        state.PauseTiming();
        benchmark::DoNotOptimize(s->pt_n);
        s.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(bytes.size()));
    state.counters["file_MB"] = static_cast<double>(bytes.size()) / 1e6;
}

void BM_EncodeLarge(benchmark::State& state) {
    model::Store s;
    decode(s, large_file());
    QuietPrompt ui;
    for (auto _ : state) {
        typ::save_typ(s, ui, clock(), false);
        benchmark::DoNotOptimize(s.curf.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(s.curf.size()));
}

void BM_TextLarge(benchmark::State& state) {
    model::Store s;
    decode(s, large_file());
    QuietPrompt ui;
    size_t written = 0;
    for (auto _ : state) {
        written = 0;
        text::save_txt(s, ui, clock(), 13, [&](std::string_view piece) { written += piece.size(); });
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(written));
    state.counters["text_MB"] = static_cast<double>(written) / 1e6;
}

void BM_DecodeCorpus(benchmark::State& state) {
    const auto files = corpus();
    int64_t total = 0;
    for (auto& f : files) total += static_cast<int64_t>(f.size());
    for (auto _ : state) {
        // Fresh tables and a copy of each file are made, and the tables
        // dropped, outside the timing: what is measured is the decode.
        state.PauseTiming();
        std::vector<std::string> copies = files;
        std::vector<model::Store> stores(files.size());
        state.ResumeTiming();
        for (size_t k = 0; k < files.size(); ++k) decode(stores[k], std::move(copies[k]));
        state.PauseTiming();
        benchmark::DoNotOptimize(stores.data());
        stores.clear();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
}

void BM_EncodeCorpus(benchmark::State& state) {
    const auto files = corpus();
    std::vector<model::Store> stores(files.size());
    int64_t total = 0;
    for (size_t k = 0; k < files.size(); ++k) decode(stores[k], files[k]);
    QuietPrompt ui;
    for (auto _ : state) {
        total = 0;
        for (auto& s : stores) {
            typ::save_typ(s, ui, clock(), false);
            total += static_cast<int64_t>(s.curf.size());
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
}

// Peak resident memory of a whole command-line run, as a multiple of the
// file size. The run goes through /usr/bin/time: a child forked from this
// process would count the benchmark's own pages as its own.
double peak_ratio(const std::vector<std::string>& args, size_t file_size) {
    const std::string out = (std::filesystem::temp_directory_path() / "korvex-bench-rss").string();
    std::vector<std::string> all = {"/usr/bin/time", "-f", "%M", "-o", out};
    all.insert(all.end(), args.begin(), args.end());
    pid_t pid = fork();
    if (pid == 0) {
        std::vector<char*> argv;
        for (auto& a : all) argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        int devnull = open("/dev/null", O_WRONLY);
        dup2(devnull, 1);
        dup2(devnull, 2);
        execv(argv[0], argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    const std::string kb = platform::read_file(out).value_or("0");
    std::filesystem::remove(out);
    return std::atof(kb.c_str()) * 1024.0 / static_cast<double>(file_size);
}

void BM_PeakMemoryLarge(benchmark::State& state) {
    const std::string& bytes = large_file();
    const std::string path = (std::filesystem::temp_directory_path() / "korvex-bench-large.typ").string();
    platform::write_file_atomic(path, bytes);
    double dec = 0, enc = 0;
    for (auto _ : state) {
        dec = peak_ratio({KORVEX_CLI_PATH, "decode", path, "-o", "/dev/null"}, bytes.size());
        enc = peak_ratio({KORVEX_CLI_PATH, "encode", path, "-o", path + ".out"}, bytes.size());
    }
    std::filesystem::remove(path);
    std::filesystem::remove(path + ".out");
    state.counters["decode_peak_x"] = dec;
    state.counters["encode_peak_x"] = enc;
}

}  // namespace

BENCHMARK(BM_DecodeLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TextLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeCorpus)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeCorpus)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PeakMemoryLarge)->Unit(benchmark::kMillisecond)->Iterations(1);

BENCHMARK_MAIN();

// A TYP inside a map container of 1 GB (generated, its tiles left as holes):
// listing the subfiles, replacing the TYP, and the peak memory of a replace
// by the command line.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

#include "integration/img_container.h"
#include "integration/img_replace.h"
#include "platform/files.h"
#include "support/img_builder.h"

using namespace korvex;

namespace {

constexpr uint64_t k_tile_bytes = 250ull << 20;  // four tiles: 1 GB
constexpr int k_block_exponent = 15;             // 32 kB blocks

std::filesystem::path folder() {
    static const std::filesystem::path dir = [] {
        auto d = std::filesystem::temp_directory_path() / ("korvex-bench-img-" + std::to_string(::getpid()));
        std::filesystem::create_directories(d);
        return d;
    }();
    return dir;
}

const std::string& typ_bytes() {
    static const std::string t =
        platform::read_file(std::string(KORVEX_SOURCE_DIR) + "/data/samples/sample.typ").value_or("");
    return t;
}

// The 1 GB container, made once.
const std::string& large_map() {
    static const std::string path = [] {
        const std::string p = (folder() / "gmapsupp.img").string();
        std::vector<samples::ImgPart> parts = {{"MAKEGMAP", "MPS", std::string(91, 'm')}};
        for (const char* type : {"RGN", "TRE", "LBL", "NET"}) parts.push_back({"63240001", type, "", k_tile_bytes});
        parts.push_back({"0000XMAP", "TYP", typ_bytes()});
        parts.push_back({"00004242", "SRT", std::string(879, 's')});
        samples::build_img(p, k_block_exponent, parts);
        return p;
    }();
    return path;
}

void BM_ListLargeMap(benchmark::State& state) {
    const std::string& map = large_map();
    size_t n = 0;
    for (auto _ : state) {
        std::string error;
        auto c = integration::read_container(map, error);
        if (!c) state.SkipWithError(error.c_str());
        n = c ? c->subfiles.size() : 0;
        benchmark::DoNotOptimize(n);
    }
    state.counters["subfiles"] = static_cast<double>(n);
    state.counters["map_GB"] = static_cast<double>(std::filesystem::file_size(map)) / (1 << 30);
}

// A larger TYP each time, into a new container beside the old one (as an
// in-place save does before its rename).
void BM_ReplaceTypInLargeMap(benchmark::State& state) {
    const std::string& map = large_map();
    const std::string out = (folder() / "out.img").string();
    std::string typ = typ_bytes() + std::string(100000, 't');
    for (auto _ : state) {
        std::string error;
        if (!integration::replace_typ(map, "", typ, out, error)) state.SkipWithError(error.c_str());
    }
    std::filesystem::remove(out);
}

// The same with every byte of the tiles written (256 MB of them): no holes
// to skip, so this is the disk's speed of a real map.
void BM_ReplaceTypInDenseMap(benchmark::State& state) {
    const std::string map = (folder() / "dense.img").string();
    std::vector<samples::ImgPart> parts;
    for (const char* type : {"RGN", "TRE", "LBL", "NET"})
        parts.push_back({"63240001", type, std::string(64 << 20, 'd')});
    parts.push_back({"0000XMAP", "TYP", typ_bytes()});
    samples::build_img(map, k_block_exponent, parts);
    const std::string out = (folder() / "dense-out.img").string();
    const std::string typ = typ_bytes() + std::string(100000, 't');
    for (auto _ : state) {
        std::string error;
        if (!integration::replace_typ(map, "", typ, out, error)) state.SkipWithError(error.c_str());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(map)));
    std::filesystem::remove(out);
    std::filesystem::remove(map);
}

// Peak resident memory of `korvex-cli img replace` on the 1 GB map, in MB.
// The run goes through /usr/bin/time: a child forked from this process
// would count the benchmark's own pages as its own.
void BM_ReplacePeakMemory(benchmark::State& state) {
    const std::string& map = large_map();
    const std::string typ = (folder() / "new.typ").string();
    const std::string out = (folder() / "cli.img").string();
    const std::string rss = (folder() / "rss").string();
    platform::write_file_atomic(typ, typ_bytes());
    double mb = 0;
    for (auto _ : state) {
        std::vector<std::string> all = {"/usr/bin/time", "-f", "%M", "-o", rss, KORVEX_CLI_PATH, "img", "replace",
                                        map, typ, "-o", out};
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
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) state.SkipWithError("korvex-cli img replace failed");
        mb = std::atof(platform::read_file(rss).value_or("0").c_str()) / 1024.0;
    }
    std::filesystem::remove(out);
    state.counters["peak_MB"] = mb;
}

}  // namespace

BENCHMARK(BM_ListLargeMap)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReplaceTypInLargeMap)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReplaceTypInDenseMap)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_ReplacePeakMemory)->Unit(benchmark::kMillisecond)->Iterations(1);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::filesystem::remove_all(folder());
    return 0;
}

// The checks and repairs on the generated file of more than 20,000 elements
// (64x64 points of up to 255 colours, half with night pictures): every
// read-only check together under 300 ms, Fix Unused Colours under 1 s; and
// `korvex-cli check` on the largest corpus file, the whole process, under
// 200 ms.
#include <benchmark/benchmark.h>

#include <fcntl.h>

#include <chrono>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>

#include "model/store.h"
#include "platform/prompt.h"
#include "support/large_projects.h"
#include "support/sample_builder.h"
#include "workbench/checks.h"
#include "workbench/draworder_check.h"
#include "workbench/label_codepage_check.h"
#include "workbench/pipeline_checks.h"
#include "workbench/point_limits_check.h"
#include "workbench/unused_colours.h"

extern char** environ;

using namespace korvex;

namespace {

namespace fs = std::filesystem;

const model::Store& large_store() { return samples::large_project(); }

int32_t element_count(const model::Store& s) { return s.pg_n + s.ln_n + s.ln_nact + s.pt_n + s.pt_nx; }

template <class Check>
void run_check(benchmark::State& state, Check check) {
    const model::Store& s = large_store();
    size_t found = 0;
    for (auto _ : state) {
        const workbench::Findings f = check(s);
        found = f.size();
        benchmark::DoNotOptimize(f.data());
    }
    state.counters["elements"] = element_count(s);
    state.counters["findings"] = static_cast<double>(found);
}

void BM_AllReadOnlyChecks(benchmark::State& state) {
    run_check(state, [](const model::Store& s) { return workbench::pipeline_findings(s); });
}

// Each part of the whole, to see which one a slower whole comes from.
void BM_ConsistencyChecks(benchmark::State& state) {
    run_check(state, [](const model::Store& s) { return workbench::consistency_findings(s); });
}
void BM_LabelCodepage(benchmark::State& state) {
    run_check(state, [](const model::Store& s) { return workbench::chk_label_codepage(s); });
}
void BM_Draworder(benchmark::State& state) {
    run_check(state, [](const model::Store& s) {
        workbench::Findings f = workbench::chk_no_draworder(s);
        const workbench::Findings d = workbench::chk_draworder_duplicates(s);
        f.insert(f.end(), d.begin(), d.end());
        return f;
    });
}
void BM_PointLimits(benchmark::State& state) {
    run_check(state, [](const model::Store& s) { return workbench::chk_point_limits(s, workbench::k_default_max_size); });
}

// The Colours menu entry as the window runs it, answered Yes: the report of
// the three classes written and shown, then the repair.
void BM_FixUnusedColours(benchmark::State& state) {
    const fs::path folder = fs::temp_directory_path() / "korvex-bench-checks";
    fs::create_directories(folder);
    platform::QuietPrompt ui;
    bool changed = false;
    for (auto _ : state) {
        state.PauseTiming();
        model::Store s = large_store();
        state.ResumeTiming();
        changed = workbench::fix_unused_colours(s, ui, folder.string(), false);
        state.PauseTiming();
        benchmark::DoNotOptimize(s.pt_col.data());
        s = model::Store();
        state.ResumeTiming();
    }
    fs::remove_all(folder);
    state.counters["elements"] = element_count(large_store());
    state.counters["changed"] = changed ? 1 : 0;
}

std::string largest_corpus_file() {
    const fs::path dir = fs::path(KORVEX_SOURCE_DIR).parent_path() / "shared" / "corpus";
    std::string best;
    uintmax_t size = 0;
    if (!fs::is_directory(dir)) return best;
    for (const auto& e : fs::recursive_directory_iterator(dir)) {
        const std::string ext = e.path().extension().string();
        if (!e.is_regular_file() || (ext != ".typ" && ext != ".txt")) continue;
        if (e.file_size() > size) {
            size = e.file_size();
            best = e.path().string();
        }
    }
    return best;
}

// The whole process, start to exit, as a pipeline waits for it.
void BM_CliCheckLargestCorpusFile(benchmark::State& state) {
    const std::string file = largest_corpus_file();
    if (file.empty()) {
        state.SkipWithError("../shared/corpus is missing");
        return;
    }
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&quiet, 2, "/dev/null", O_WRONLY, 0);
    std::string cli = KORVEX_CLI_PATH, command = "check", json = "--json";
    char* argv[] = {cli.data(), command.data(), json.data(), const_cast<char*>(file.c_str()), nullptr};
    int status = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        pid_t pid = 0;
        if (posix_spawn(&pid, argv[0], &quiet, nullptr, argv, environ) != 0) {
            state.SkipWithError("korvex-cli did not start");
            break;
        }
        waitpid(pid, &status, 0);
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    posix_spawn_file_actions_destroy(&quiet);
    if (!WIFEXITED(status) || WEXITSTATUS(status) > 1) state.SkipWithError("korvex-cli check failed");
    state.SetLabel(fs::path(file).filename().string());
    state.counters["kB"] = static_cast<double>(fs::file_size(file)) / 1000.0;
}

}  // namespace

BENCHMARK(BM_AllReadOnlyChecks)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ConsistencyChecks)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LabelCodepage)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Draworder)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PointLimits)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FixUnusedColours)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_CliCheckLargestCorpusFile)->Unit(benchmark::kMillisecond)->UseManualTime();

BENCHMARK_MAIN();

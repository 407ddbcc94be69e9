// SPDX-License-Identifier: MIT
// Whole reference ET runs, everything written. With an argument --make-basin FOLDER it only makes
// the input of 1,000,000 cells, for the comparison with peers.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdio>
#include <fstream>

#include "bench/big_basin.h"
#include "forms/form.h"
#include "platform/threads/parallel_loop.h"
#include "refet/refet_run.h"
#include "settings/settings_file.h"

namespace velmora::bench {
namespace {

class SilentHost : public IApplication, IPrompts, IBrowsers, IDialogs, IMxDocument {
  public:
    IPlatform& platform() override { return platform_; }
    IPrompts& prompts() override { return *this; }
    IBrowsers& browsers() override { return *this; }
    IDialogs& dialogs() override { return *this; }
    IMxDocument& document() override { return *this; }
    Feedback& feedback() override { return feedback_; }
    std::string extensionFolder() override { return {}; }
    void noteOutcome(StepOutcome) override {}

  private:
    class Layer : public IRasterLayer {
      public:
        std::string name() const override { return {}; }
        std::string path() const override { return {}; }
        void setStretchedRenderer(const AlgorithmicColorRamp&) override {}
    };
    void message(const std::string& text, const std::string&) override {
        if (!text.starts_with("Time for")) std::fprintf(stderr, "%s\n", text.c_str());
    }
    bool confirm(const std::string&, const std::string&) override { return false; }
    void showReason(const std::string& text) override { message(text, {}); }
    void showNotice(const std::string& text) override { message(text, {}); }
    std::string browseFolder(const std::string&) override { return {}; }
    std::string browseDataset(DatasetKind, const std::string&, const std::string&,
                              const std::string&) override {
        return {};
    }
    std::string openFile(const std::string&) override { return {}; }
    std::string saveFile(const std::string&) override { return {}; }
    std::string lastBrowseLocation() override { return {}; }
    void showModal(Form&) override {}
    void show(Form&) override {}
    std::unique_ptr<IRasterLayer> createRasterLayer(const std::string&) override {
        return std::make_unique<Layer>();
    }
    void addLayer(std::unique_ptr<IRasterLayer>) override {}
    void addTable(std::shared_ptr<ITable>) override {}
    void refreshContents() override {}

    platform::Platform platform_;
    Feedback feedback_;
};

std::string basinFolder(int n) {
    return (std::filesystem::temp_directory_path() / ("velmora-bench-" + std::to_string(n)))
        .string();
}

// Sides of the grid and threads (0: all).
void referenceEtRun(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    SilentHost host;
    const RunSettings settings = makeBigBasin(host.platform(), basinFolder(n), n);
    platform::useThreads(static_cast<int>(state.range(1)));
    for (auto _ : state) {
        if (!ReferenceEtRun(host, settings).run()) state.SkipWithError("the run failed");
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const double cells = static_cast<double>(n) * n;
    state.counters["cells/s"] =
        benchmark::Counter(cells * 12, benchmark::Counter::kIsIterationInvariantRate);
    state.counters["peakBytes/cell"] = static_cast<double>(usage.ru_maxrss) * 1024 / cells;
    platform::useThreads(0);
}
BENCHMARK(referenceEtRun)
    ->ArgNames({"side", "threads"})
    ->Args({500, 0})
    ->Args({1000, 1})
    ->Args({1000, 0})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

int makeOnly(const std::string& folder) {
    platform::Platform platform;
    const RunSettings settings = makeBigBasin(platform, folder, 1000);
    platform.files().createFolder(folder + "/settings");
    writeSettings(platform.files(), defaultSettingsPath(folder + "/settings"), settings);
    return 0;
}

}  // namespace
}  // namespace velmora::bench

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "--make-basin")
        return velmora::bench::makeOnly(argv[2]);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

// The benchmark of what runs in the process:  bench_core DIRECTORY TABLE
//
// Works in a scratch directory that it makes in DIRECTORY, and appends its tables to the file
// TABLE. What the program says goes nowhere.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "bench/rows.h"

namespace {

// One name for the work and one for its floor.
const char FLOOR[] = " (floor)";

using Costs = std::map<std::string, std::vector<Cost>>;

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

Cost median_cost(const std::vector<Cost> &costs) {
  std::vector<double> wall, cpu, syncs;
  for (const Cost &cost : costs) {
    wall.push_back(cost.wall);
    cpu.push_back(cost.cpu);
    syncs.push_back(cost.syncs);
  }
  return {median(wall), median(cpu), median(syncs), costs.front().nb_syncs};
}

// The costs are kept by ourselves: the report has no place for the syncs.
class Silent : public benchmark::BenchmarkReporter {
public:
  bool ReportContext(const Context &) override {
    return true;
  }
  void ReportRuns(const std::vector<Run> &) override {
  }
};

void register_work(const std::string &name, const std::function<void()> &prepare,
                   const std::function<void()> &work, int times, Costs *costs) {
  auto measure = [=](benchmark::State &state) {
    for (auto _ : state) {
      if (prepare)
        prepare();
      Cost cost = COST_OF(work);
      state.SetIterationTime(cost.wall);
      (*costs)[name].push_back(cost);
    }
  };
  benchmark::RegisterBenchmark(name.c_str(), measure)
      ->Iterations(1)
      ->Repetitions(times)
      ->UseManualTime();
}

} // namespace

void MEASURE(const std::string &input, const std::vector<Work> &works, int times, FILE *out) {
  Costs costs;
  benchmark::ClearRegisteredBenchmarks();
  for (const Work &work : works) {
    register_work(work.what, work.prepare, work.work, times, &costs);
    if (work.floor)
      register_work(work.what + FLOOR, nullptr, work.floor, times, &costs);
  }
  Silent silent;
  benchmark::RunSpecifiedBenchmarks(&silent);
  for (const Work &work : works) {
    Figure figure = {work.what, input,         median_cost(costs[work.what]), {}, work.kind,
                     work.bar,  work.megabytes};
    if (work.floor)
      figure.floor = median_cost(costs[work.what + FLOOR]);
    PRINT_FIGURE(figure, out);
  }
}

int main(int argc, char **argv) {
  if (argc != 3)
    return 1;
  FILE *out = fopen(argv[2], "a");
  if (out == nullptr || freopen("/dev/null", "w", stdout) == nullptr)
    return 1;
  std::filesystem::current_path(argv[1]);
  char name[] = "bench_core";
  char in_turns[] = "--benchmark_enable_random_interleaving=true";
  char *flags[] = {name, in_turns, nullptr};
  int nb_flags = 2;
  benchmark::Initialize(&nb_flags, flags);
  LIFE_ROWS(out);
  LOAD_ROWS(FEW_DICTIONARIES, 15, out);
  LOAD_ROWS(LONG_DICTIONARIES, 3, out);
  LOAD_ROWS(MANY_DICTIONARIES, 3, out);
  fclose(out);
  return 0;
}

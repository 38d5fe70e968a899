// The operations of a model's life, on networks of 100, 1,000 and 10,000 stations.

#include <benchmark/benchmark.h>

#include <ctime>
#include <exception>
#include <iostream>
#include <utility>

#include "bench/growth_reporter.h"
#include "bench/sample_network.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace dtsdb::bench {
namespace {

/// Processor time that the program has used, in seconds.
double ProcessorTime() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Runs `work`, which returns true on success, as one timed iteration. Processor time counts: on a machine that is busy
/// with other things the clock on the wall shows nothing of growth.
template <class Work>
void Time(benchmark::State& state, Work work) {
  const double start = ProcessorTime();
  const bool done = work();
  state.SetIterationTime(ProcessorTime() - start);
  if (!done) state.SkipWithError("failed");
}

const SampleNetwork& NetworkOf(const benchmark::State& state) {
  return SampleNetwork::Of(static_cast<int>(state.range(0)));
}

void DetectAll(benchmark::State& state) {
  const SampleNetwork& sample = NetworkOf(state);
  for ([[maybe_unused]] auto iteration : state) {
    DTSDB network;
    network.ReadObject(sample.InputFile());
    NMD validation(&network);
    Time(state, [&] { return validation.DetectAll(); });
  }
}

void TpAllnew(benchmark::State& state) {
  const SampleNetwork& sample = NetworkOf(state);
  for ([[maybe_unused]] auto iteration : state) {
    DTSDB network;
    network.ReadObject(sample.ReadyFile());
    TP topology(&network);
    Time(state, [&] { return topology.tpAllnew() == 1; });
  }
}

void WriteObject(benchmark::State& state) {
  const SampleNetwork& sample = NetworkOf(state);
  DTSDB network;
  network.ReadObject(sample.ReadyFile());
  for ([[maybe_unused]] auto iteration : state) {
    Time(state, [&] { return network.WriteObject(sample.OutputFile()); });
  }
}

void ReadObject(benchmark::State& state) {
  const SampleNetwork& sample = NetworkOf(state);
  for ([[maybe_unused]] auto iteration : state) {
    DTSDB network;
    Time(state, [&] { return network.ReadObject(sample.ReadyFile()); });
  }
}

// Size by size, so that only one network is kept at a time.
void RegisterAll() {
  const std::pair<const char*, void (*)(benchmark::State&)> operations[] = {
      {"DetectAll", DetectAll}, {"tpAllnew", TpAllnew}, {"WriteObject", WriteObject}, {"ReadObject", ReadObject}};
  for (const int stations : {100, 1000, 10000}) {
    for (const auto& [name, operation] : operations) {
      benchmark::RegisterBenchmark(name, operation)->Arg(stations)->UseManualTime()->Unit(benchmark::kMillisecond);
    }
  }
}

}  // namespace
}  // namespace dtsdb::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  try {
    dtsdb::bench::RegisterAll();
    dtsdb::bench::GrowthReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
  } catch (const std::exception& error) {
    std::cerr << "dtsdb_bench: " << error.what() << '\n';
    return 1;
  }
  return 0;
}

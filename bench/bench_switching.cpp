// One switching operation at a time on networks of 100, 1,000 and 10,000 stations: an incremental run beside a full
// one and beside the connected components of the whole node-breaker graph, found over plain arrays.
//
//     bench_switching [FOLDER]
//
// FOLDER is where the realtime store lies, by default in memory. Wall clock; the fastest of the rounds counts.

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/compressed_rows.h"
#include "bench/growth_reporter.h"
#include "bench/operations.h"
#include "bench/sample_network.h"
#include "bench/store.h"
#include "bench/timing.h"
#include "topology/tp.h"

namespace dtsdb::bench {
namespace {

constexpr int kRounds = 20;
constexpr int kFullRounds = 5;

/// The fastest of `rounds` rounds of `job`, in milliseconds.
template <class Job>
double Fastest(int rounds, Job job) {
  double fastest = Milliseconds(job);
  for (int i = 1; i < rounds; ++i) fastest = std::min(fastest, Milliseconds(job));
  return fastest;
}

/// Times by number of stations, in the order in which they were first taken.
class Results {
 public:
  void Add(const std::string& what, int stations, double milliseconds) {
    if (m_times.find(what) == m_times.end()) m_order.push_back(what);
    m_times[what][stations] = milliseconds;
  }

  void Print() const {
    std::printf("%-44s %10s %10s %10s %7s %12s\n", "milliseconds, by stations", "100", "1,000", "10,000", "growth",
                "full/this");
    for (const std::string& what : m_order) {
      const TimeBySize& times = m_times.at(what);
      std::printf("%-44s", what.c_str());
      for (const auto& [stations, time] : times) std::printf(" %10.3f", time);
      std::printf(" %7s %12.1f\n", ("n^" + std::to_string(FittedExponent(times)).substr(0, 4)).c_str(),
                  m_times.at(kFullRun).rbegin()->second / times.rbegin()->second);
    }
  }

  static constexpr const char* kFullRun = "tpAllnew";

 private:
  std::vector<std::string> m_order;
  std::map<std::string, TimeBySize> m_times;
};

/// Switches off and on again, each followed by a run and its storing. The switching counts with the run.
void MeasureOperation(TP& topology, dbDatabase* store, const Operation& operation, int stations, Results& results) {
  for (const bool on : {false, true}) {
    double change = 1e9;
    double write = 1e9;
    int levels = 0;
    for (int i = 0; i < kRounds; ++i) {
      bool waits = false;
      bool done = false;
      change = std::min(change, Milliseconds([&] {
                          waits = topology.tpSetCompStatus(operation.id.constData(), operation.type, on) == 1;
                          done = topology.tpChange() == 1;
                        }));
      if (!waits) throw std::runtime_error(std::string("no need to follow up the ") + operation.name);
      if (!done) throw std::runtime_error("an incremental run failed");
      levels = topology.getChangedKVCount();
      write = std::min(write, Milliseconds([&] { topology.tpWriteChangedData(store); }));
      topology.tpSetCompStatus(operation.id.constData(), operation.type, !on);
      if (topology.tpChange() != 1) throw std::runtime_error("an incremental run failed");
    }
    topology.tpSetCompStatus(operation.id.constData(), operation.type, on);
    topology.tpChange();
    const std::string name = std::string(operation.name) + (on ? " in" : " out");
    results.Add(name + ": the run", stations, change);
    results.Add(name + ": and tpWriteChangedData", stations, change + write);
    std::fprintf(stderr, "%6d stations: %s %s, %d levels\n", stations, operation.id.constData(), on ? "in" : "out",
                 levels);
  }
}

void Measure(const QString& folder, int stations, Results& results) {
  DTSDB network;
  if (!network.ReadObject(SampleNetwork::Of(stations).ReadyFile())) throw std::runtime_error("no network");
  TP topology(&network);
  results.Add(Results::kFullRun, stations, Fastest(kFullRounds, [&] { topology.tpAllnew(); }));
  const CompressedRows rows = RowsOf(network);
  std::vector<int> component;
  results.Add("components on compressed rows", stations,
              Fastest(kFullRounds, [&] { FindComponents(rows, component); }));
  results.Add("components, the rows made first", stations,
              Fastest(kFullRounds, [&] { FindComponents(RowsOf(network), component); }));

  Store store(folder + QStringLiteral("/switching.fdb"));
  network.WriteFastdb(store.Db());
  for (const Operation& operation : ChooseOperations(network, topology)) {
    MeasureOperation(topology, store.Db(), operation, stations, results);
  }
}

}  // namespace
}  // namespace dtsdb::bench

int main(int argc, char** argv) {
  try {
    const QTemporaryDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) + QStringLiteral("/switching-XXXXXX")
                                        : QStringLiteral("/dev/shm/switching-XXXXXX"));
    dtsdb::bench::Results results;
    for (const int stations : {100, 1000, 10000}) dtsdb::bench::Measure(folder.path(), stations, results);
    results.Print();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench_switching: %s\n", error.what());
    return 1;
  }
  return 0;
}

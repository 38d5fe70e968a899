// The exchange of whole models with the realtime database, on networks of several sizes.
//
//     bench_exchange [--json] [--stations N]... [FOLDER...]
//
// Without a FOLDER the stores lie in memory and in the folder for temporary files. The fastest round of each job
// counts. Built with an installed FastDB it does the same work there: bench/report lets the two take turns.

#include <QDir>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/own_process.h"
#include "bench/sample_network.h"
#include "bench/store.h"
#include "bench/timing.h"
#include "model/exchange.h"

namespace dtsdb::bench {
namespace {

constexpr int kRounds = 3;
constexpr int kTransactions = 1000;

/// What the jobs took, in milliseconds.
struct Times {
  double write = 1e300;
  double again = 1e300;
  double changed = 1e300;
  double read = 1e300;
  double one = 1e300;
  double walk = 1e300;
  long rows = 0;
  double megabytes = 0;
};

struct JobName {
  const char* name;
  double Times::*time;
};
constexpr JobName kJobs[] = {
    {"write", &Times::write}, {"write again", &Times::again},       {"write changed powers", &Times::changed},
    {"read", &Times::read},   {"one-row transaction", &Times::one}, {"bare cursor walk", &Times::walk},
};

template <class Record, class Visit>
void ForEachRecord(DTSDB& model, const Visit& visit) {
  tTable<Record>& table = TableOf<Record>(model);
  for (int i = 0; i < table.GetCount(); ++i) visit(table[i]);
}

/// New powers for all units and loads, as a new state of the network brings them.
void ChangePowers(DTSDB& model) {
  ForEachRecord<UN>(model, [](UN& unit) { unit.p += 1; });
  ForEachRecord<LD>(model, [](LD& load) { load.p += 1; });
}

/// Another program's work: it changes one load and commits, each time another one.
void ChangeLoads(Store& store, DTSDB& model) {
  TwinWriter<LD> writer(store.Db());
  for (int i = 0; i < kTransactions; ++i) {
    LD& load = (*model.m_ldTable)[i * 7919 % model.m_ldTable->GetCount()];
    load.p += 1;
    writer.Update(load, &LD::p);
    store.Db()->commit();
  }
}

/// Looks at each breaker as it lies in the store.
void Walk(Store& store, DTSDB& model) {
  dbCursor<Twin<CB>::Row> cursor(store.Db());
  int rows = 0;
  long long sum = cursor.select();
  for (const auto* row = cursor.get(); row != nullptr; row = cursor.next()) {
    sum += row->id[0];
    ++rows;
  }
  store.Db()->commit();
  if (rows != model.m_cbTable->GetCount() || sum == 0) throw std::runtime_error("breakers are missing");
}

void Best(double& time, const std::function<void()>& job) { time = std::min(time, Milliseconds(job)); }

void ReadWhole(Store& store, DTSDB& network, Times& times) {
  DTSDB model;
  Best(times.read, [&] { model.ReadFastdb(store.Db()); });
  // The log of the topology is not read back.
  if (RowCount(model) + network.m_tplTable->GetCount() != RowCount(network))
    throw std::runtime_error("rows are missing");
}

/// All jobs on a network of this folder, with a store of its own.
Times Measure(const QString& ready, const QString& path) {
  DTSDB network;
  if (!network.ReadObject(ready)) throw std::runtime_error("a network can't be read");
  Times times;
  for (int round = 0; round < kRounds; ++round) {
    Store store(path);
    Best(times.write, [&] { network.WriteFastdb(store.Db()); });
  }
  Store store(path);
  network.WriteFastdb(store.Db());
  // As it comes back, so that the next write changes nothing.
  network.ReadFastdb(store.Db());
  network.WriteFastdb(store.Db());
  for (int round = 0; round < kRounds; ++round) {
    Best(times.again, [&] { network.WriteFastdb(store.Db()); });
    ChangePowers(network);
    Best(times.changed, [&] { network.WriteFastdb(store.Db()); });
    ReadWhole(store, network, times);
    Best(times.one, [&] { ChangeLoads(store, network); });
    Best(times.walk, [&] { Walk(store, network); });
  }
  times.one /= kTransactions;
  times.rows = RowCount(network);
  times.megabytes = store.Megabytes();
  return times;
}

struct Options {
  bool json = false;
  std::vector<int> stations;
  QStringList folders;
};

Options OptionsOf(int count, char** arguments) {
  Options options;
  for (int i = 1; i < count; ++i) {
    if (std::strcmp(arguments[i], "--json") == 0) {
      options.json = true;
    } else if (std::strcmp(arguments[i], "--stations") == 0 && i + 1 < count) {
      options.stations.push_back(std::atoi(arguments[++i]));
    } else {
      // Before a network is made: its files are made in a directory that becomes the current one.
      options.folders += QDir(QString::fromLocal8Bit(arguments[i])).absolutePath();
    }
  }
  if (options.stations.empty()) options.stations = {1000, 10000};
  if (options.folders.isEmpty()) options.folders = {QStringLiteral("/dev/shm"), QDir::tempPath()};
  return options;
}

void PrintHead() {
  std::printf("Milliseconds, best of %d rounds; a one-row transaction is the mean of %d.\n%8s %8s %8s", kRounds,
              kTransactions, "stations", "rows", "MB");
  for (const JobName& job : kJobs) std::printf(" %20s", job.name);
  std::printf("  store in\n");
}

void Print(const Times& times, int stations, const QString& folder, bool json) {
  if (json) {
    for (const JobName& job : kJobs) {
      std::printf("{\"job\": \"%s\", \"stations\": %d, \"ms\": %.6f}\n", job.name, stations, times.*job.time);
    }
  } else {
    std::printf("%8d %8ld %8.1f", stations, times.rows, times.megabytes);
    for (const JobName& job : kJobs) std::printf(" %20.4f", times.*job.time);
    std::printf("  %s\n", qPrintable(folder));
  }
  std::fflush(stdout);
}

void Run(int stations, const Options& options) {
  const QTemporaryDir network;
  if (!network.isValid()) throw std::runtime_error("no folder for the network");
  InOwnProcess([&] {
    SampleNetwork::Make(stations, network.path());
    return true;
  });
  const QString ready = network.path() + QLatin1String(SampleNetwork::kReady);
  for (const QString& folder : options.folders) {
    const QTemporaryDir directory(folder + QStringLiteral("/bench_exchange-XXXXXX"));
    if (!directory.isValid()) throw std::runtime_error("no folder to write in: " + folder.toStdString());
    const QString path = directory.filePath(QStringLiteral("store.fdb"));
    Print(InOwnProcess([&] { return Measure(ready, path); }), stations, folder, options.json);
  }
}

}  // namespace
}  // namespace dtsdb::bench

int main(int argc, char** argv) {
  const dtsdb::bench::Options options = dtsdb::bench::OptionsOf(argc, argv);
  if (!options.json) dtsdb::bench::PrintHead();
  try {
    for (const int stations : options.stations) dtsdb::bench::Run(stations, options);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench_exchange: %s\n", error.what());
    return 1;
  }
  return 0;
}

// The exchange of whole models with the realtime database, on networks of 1,000 and 10,000 stations.
//
//     bench_exchange [FOLDER...]
//
// Without a FOLDER the stores lie in memory and in the folder for temporary files. The fastest round of each job
// counts.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>

#include "bench/sample_network.h"
#include "bench/store.h"
#include "bench/timing.h"
#include "model/exchange.h"

namespace dtsdb::bench {
namespace {

constexpr int kRounds = 3;
constexpr int kTransactions = 1000;

int RowsOf(DTSDB& model) {
  int rows = 0;
  ForEachTable(model, [&rows](auto& table) { rows += table.GetCount(); });
  return rows;
}

template <class Job>
double Best(Job job) {
  double best = 1e300;
  for (int round = 0; round < kRounds; ++round) best = std::min(best, job());
  return best;
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

void Run(int stations, const QString& folder) {
  QTemporaryDir directory(folder + QStringLiteral("/bench_exchange-XXXXXX"));
  if (!directory.isValid()) throw std::runtime_error("no folder to write in: " + folder.toStdString());
  const QString path = directory.filePath(QStringLiteral("store.fdb"));
  DTSDB network;
  network.ReadObject(SampleNetwork::Of(stations).ReadyFile());

  const double write = Best([&] {
    Store store(path);
    return Milliseconds([&] { network.WriteFastdb(store.Db()); });
  });

  Store store(path);
  network.WriteFastdb(store.Db());
  // As it comes back, so that the next write changes nothing.
  network.ReadFastdb(store.Db());
  network.WriteFastdb(store.Db());
  const double merge = Best([&] { return Milliseconds([&] { network.WriteFastdb(store.Db()); }); });
  const double read = Best([&] {
    DTSDB model;
    const double time = Milliseconds([&] { model.ReadFastdb(store.Db()); });
    // The log of the topology is not read back.
    if (RowsOf(model) + network.m_tplTable->GetCount() != RowsOf(network)) throw std::runtime_error("rows are missing");
    return time;
  });
  const double change = Best([&] { return Milliseconds([&] { ChangeLoads(store, network); }); }) / kTransactions;

  std::printf("%8d %8d %8.1f %10.1f %12.1f %8.1f %14.4f  %s\n", stations, RowsOf(network), store.Megabytes(), write,
              merge, read, change, qPrintable(folder));
  std::fflush(stdout);
}

}  // namespace
}  // namespace dtsdb::bench

int main(int argc, char** argv) {
  QStringList folders;
  // Before a network is made: its files are made in a directory that becomes the current one.
  for (int i = 1; i < argc; ++i) folders += QDir(QString::fromLocal8Bit(argv[i])).absolutePath();
  if (folders.isEmpty()) folders = {QStringLiteral("/dev/shm"), QDir::tempPath()};
  std::printf("Milliseconds, best of %d rounds; the change of one row is the mean of %d transactions.\n",
              dtsdb::bench::kRounds, dtsdb::bench::kTransactions);
  std::printf("%8s %8s %8s %10s %12s %8s %14s  %s\n", "stations", "rows", "MB", "write", "write again", "read",
              "change one row", "store in");
  try {
    for (const int stations : {1000, 10000}) {
      for (const QString& folder : folders) dtsdb::bench::Run(stations, folder);
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench_exchange: %s\n", error.what());
    return 1;
  }
  return 0;
}

// All operations of the library on networks of several sizes, each beside a measuring stick in the same run.
//
//     bench_report [STATIONS...]
//
// Prints a line of JSON for each operation and size, for bench/report. Each is measured in a process of its own;
// processor time counts, the fastest of the rounds. What can use threads is measured with two of them as well, on the
// wall clock. Stores lie in memory.

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <iostream>
#include <nlohmann/json.hpp>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "analysis/screening.h"
#include "bench/compressed_rows.h"
#include "bench/operations.h"
#include "bench/own_process.h"
#include "bench/plain_lmdb.h"
#include "bench/sample_network.h"
#include "bench/store.h"
#include "bench/timing.h"
#include "breakerflow/flows.h"
#include "model/exchange.h"
#include "model/threads.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace dtsdb::bench {
namespace {

/// Processor time of the process, in milliseconds.
double ProcessorTime() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

/// What one operation took. Times in milliseconds.
struct Result {
  double time = 1e300;
  double wall = 1e300;    ///< the same on the wall clock
  double stick = 1e300;   ///< of the measuring stick
  long tablesMemory = 0;  ///< kilobytes that the process held behind the operation, in its first round
  long peakMemory = 0;    ///< and at most during it
  long count = 0;         ///< what the row's `unit` names

  template <class Job>
  void Time(Job job) {
    const bool first = peakMemory == 0;
    if (first) ResetPeak();
    wall = std::min(wall, Milliseconds([&] { time = std::min(time, Spent(job)); }));
    if (!first) return;
    peakMemory = PeakKilobytes();
    tablesMemory = ResidentKilobytes();
  }
  template <class Job>
  void Stick(Job job) {
    stick = std::min(stick, Spent(job));
  }

 private:
  template <class Job>
  static double Spent(Job job) {
    const double begin = ProcessorTime();
    job();
    return ProcessorTime() - begin;
  }
};

/// The network in its files. Small ones are measured more often: their times are shaken more.
struct Files {
  QString input;
  QString ready;
  QString output;
  QString store;
  int rounds;
};

void Read(DTSDB& model, const QString& file) { Require(model.ReadObject(file), "a network can't be read"); }

/// The texts of all keys, in random order.
std::vector<QString> KeysOf(DTSDB& model) {
  std::vector<QString> keys;
  ForEachTable(model, [&keys]<class T>(const tTable<T>& table) {
    for (int i = 0; i < table.GetCount(); ++i) {
      if constexpr (T::kKey == RecordKey::kIdentified) keys.push_back(table[i].id);
    }
  });
  std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
  return keys;
}

Result MeasureDetectAll(const Files& files) {
  Result result;
  for (int round = 0; round < files.rounds; ++round) {
    DTSDB model;
    Read(model, files.input);
    NMD validation(&model);
    result.Time([&] { Require(validation.DetectAll(), "the validation failed"); });
    std::vector<QString> keys = KeysOf(model);
    for (QString& key : keys) key.detach();
    result.count = static_cast<long>(keys.size());
    result.Stick([&] { std::sort(keys.begin(), keys.end()); });
  }
  return result;
}

Result MeasureTpAllnew(const Files& files) {
  Result result;
  std::vector<int> component;
  for (int round = 0; round < files.rounds; ++round) {
    DTSDB model;
    Read(model, files.ready);
    TP topology(&model);
    result.count = model.m_ndTable->GetCount();
    result.Time([&] { Require(topology.tpAllnew() == 1, "the topology failed"); });
    result.Stick([&] { FindComponents(RowsOf(model), component); });
  }
  return result;
}

/// Operation `number` of ChooseOperations, out and in: the slower of both counts.
Result MeasureSwitching(const Files& files, std::size_t number) {
  DTSDB model;
  Read(model, files.ready);
  TP topology(&model);
  Require(topology.tpAllnew() == 1, "the topology failed");
  const Operation operation = ChooseOperations(model, topology)[number];
  Result ways[2];
  std::vector<int> component;
  for (int round = 0; round < 20 * files.rounds; ++round) {
    Result& way = ways[round % 2];
    way.Time([&] {
      Require(topology.tpSetCompStatus(operation.id.constData(), operation.type, round % 2 != 0) == 1, "not switched");
      Require(topology.tpChange() == 1, "an incremental run failed");
    });
    if (round < files.rounds) ways[0].Stick([&] { FindComponents(RowsOf(model), component); });
    way.count = topology.getChangedKVCount();
  }
  ways[1].stick = ways[0].stick;
  return ways[0].time > ways[1].time ? ways[0] : ways[1];
}

Result MeasureCoupler(const Files& files) { return MeasureSwitching(files, 0); }
Result MeasureFeeder(const Files& files) { return MeasureSwitching(files, 1); }
Result MeasureSplittingLine(const Files& files) { return MeasureSwitching(files, 2); }
Result MeasureMeshedLine(const Files& files) { return MeasureSwitching(files, 3); }

/// The bytes of a file, copied: what no writer or reader can beat.
void CopyBytes(const QByteArray& bytes) {
  std::vector<char> copy(static_cast<std::size_t>(bytes.size()));
  std::memcpy(copy.data(), bytes.constData(), copy.size());
  // Looked at, so that the copying isn't left out.
  if (copy[copy.size() / 2] != bytes[bytes.size() / 2]) throw std::runtime_error("a copy differs");
}

QByteArray BytesOf(const QString& path) {
  QFile file(path);
  Require(file.open(QIODevice::ReadOnly), "a file can't be read");
  return file.readAll();
}

Result MeasureWriteObject(const Files& files) {
  DTSDB model;
  Read(model, files.ready);
  Result result;
  for (int round = 0; round < files.rounds; ++round) {
    result.Time([&] { Require(model.WriteObject(files.output), "the network can't be written"); });
  }
  const QByteArray bytes = BytesOf(files.output);
  for (int round = 0; round < files.rounds; ++round) result.Stick([&] { CopyBytes(bytes); });
  result.count = bytes.size();
  return result;
}

Result MeasureReadObject(const Files& files) {
  Result result;
  for (int round = 0; round < files.rounds; ++round) {
    DTSDB model;
    result.Time([&] { Read(model, files.ready); });
  }
  const QByteArray bytes = BytesOf(files.ready);
  for (int round = 0; round < files.rounds; ++round) result.Stick([&] { CopyBytes(bytes); });
  result.count = bytes.size();
  return result;
}

/// Puts what the store at `path` contains into an empty LMDB, `rounds` times.
void StickOfWriting(Result& result, const Files& files) {
  const std::vector<PlainTable> tables = PlainStore::Existing(files.store.toStdString()).Tables();
  for (int round = 0; round < files.rounds; ++round) {
    PlainStore plain((files.store + QStringLiteral(".plain")).toStdString());
    result.Stick([&] { plain.Put(tables); });
  }
}

Result MeasureWriteStore(const Files& files) {
  DTSDB model;
  Read(model, files.ready);
  Result result;
  result.count = RowCount(model);
  for (int round = 0; round < files.rounds; ++round) {
    Store store(files.store);
    result.Time([&] { model.WriteFastdb(store.Db()); });
    if (round + 1 == files.rounds) StickOfWriting(result, files);
  }
  return result;
}

Result MeasureWriteAgain(const Files& files) {
  DTSDB model;
  Read(model, files.ready);
  Store store(files.store);
  model.WriteFastdb(store.Db());
  // As it comes back, so that the next write changes nothing.
  model.ReadFastdb(store.Db());
  model.WriteFastdb(store.Db());
  Result result;
  result.count = RowCount(model);
  for (int round = 0; round < files.rounds; ++round) result.Time([&] { model.WriteFastdb(store.Db()); });
  StickOfWriting(result, files);
  return result;
}

Result MeasureReadStore(const Files& files) {
  DTSDB model;
  Read(model, files.ready);
  Store store(files.store);
  model.WriteFastdb(store.Db());
  Result result;
  for (int round = 0; round < files.rounds; ++round) {
    DTSDB copy;
    result.Time([&] { copy.ReadFastdb(store.Db()); });
    result.count = RowCount(copy);
  }
  for (int round = 0; round < files.rounds; ++round) {
    result.Stick([&] { Require(PlainStore::Existing(files.store.toStdString()).Walk() > 0, "an empty store"); });
  }
  return result;
}

/// An event that waits in tptrace of the store: taken, followed up and stored, as the topology task does it.
Result MeasureCycle(const Files& files) {
  DTSDB model;
  Read(model, files.ready);
  TP topology(&model);
  Require(topology.tpAllnew() == 1, "the topology failed");
  const Operation operation = ChooseOperations(model, topology)[0];
  Store store(files.store);
  model.WriteFastdb(store.Db());
  Result result;
  PlainStore plain((files.store + QStringLiteral(".plain")).toStdString());
  for (int round = 0; round < 10 * files.rounds; ++round) {
    tptrace row;
    row.id = round;
    row.name = operation.id.constData();
    row.type = static_cast<decltype(row.type)>(operation.type);
    row.status = round % 2 != 0;
    row.time = static_cast<decltype(row.time)>(std::time(nullptr));
    store.Db()->insert(row);
    store.Db()->commit();
    result.Time([&] {
      topology.tpReadTptrace(store.Db());
      store.Db()->commit();
      Require(topology.tpChange() == 1, "an incremental run failed");
      topology.tpWriteChangedData(store.Db());
    });
    result.Stick([&] { plain.PutOne(static_cast<unsigned>(round)); });
  }
  result.count = 1;
  return result;
}

Result MeasureFlow(const Files& files) {
  DTSDB model;
  Read(model, files.ready);
  Result result;
  std::vector<int> component;
  for (int round = 0; round < files.rounds; ++round) {
    result.Time([&] { Require(!ComputeFlows(model, {1e9F}).sets.empty(), "no flows"); });
    result.Stick([&] { FindComponents(RowsOf(model), component); });
  }
  result.count = model.m_cbTable->GetCount();
  return result;
}

Result MeasureScreening(const Files& files) {
  analysis::Result<analysis::Model> model = analysis::Model::Open(files.ready.toStdString());
  Require(model.has_value(), "the network can't be read");
  const auto all = analysis::SingleOutages(*model, {"LN", "XF"});
  Require(all.has_value(), "the outages can't be named");
  constexpr std::size_t kMost = 1000;
  const std::vector<analysis::Outage> outages(all->begin(), all->begin() + std::min(all->size(), kMost));
  analysis::ScreeningOptions options;
  options.jobs = static_cast<std::size_t>(ThreadCount());
  Result result;
  std::vector<int> component;
  for (int round = 0; round < 2; ++round) {
    result.Time([&] { Require(analysis::Screen(*model, outages, options).has_value(), "the screening failed"); });
    result.Stick([&] { FindComponents(RowsOf(model->Tables()), component); });
  }
  result.count = static_cast<long>(outages.size());
  return result;
}

constexpr const char* kComponents = "components on arrays";

/// An operation, its measuring stick, and what its Result counts.
struct Row {
  const char* operation;
  const char* stick;
  const char* unit;
  Result (*measure)(const Files&);
  bool usesThreads = false;
};

constexpr Row kRows[] = {
    {"DetectAll", "std::sort of the keys as texts", "keys", MeasureDetectAll, true},
    {"tpAllnew", kComponents, "nodes", MeasureTpAllnew, true},
    {"coupler: tpSetCompStatus and tpChange", kComponents, "levels", MeasureCoupler},
    {"feeder: tpSetCompStatus and tpChange", kComponents, "levels", MeasureFeeder},
    {"meshed line: tpSetCompStatus and tpChange", kComponents, "levels", MeasureMeshedLine},
    {"splitting line: tpSetCompStatus and tpChange", kComponents, "levels", MeasureSplittingLine},
    {"one event from tptrace to the store", "one row put into LMDB", "events", MeasureCycle},
    {"breaker flow", kComponents, "breakers", MeasureFlow},
    {"screening of up to 1,000 lines and windings", kComponents, "outages", MeasureScreening, true},
    {"WriteObject", "memcpy of the file", "bytes", MeasureWriteObject},
    {"ReadObject", "memcpy of the file", "bytes", MeasureReadObject},
    {"WriteFastdb", "LMDB, the same rows", "rows", MeasureWriteStore},
    {"WriteFastdb, nothing changed", "LMDB, the same rows", "rows", MeasureWriteAgain},
    {"ReadFastdb", "LMDB, the same rows", "rows", MeasureReadStore, true},
};

void Measure(int stations) {
  const QTemporaryDir memory(QStringLiteral("/dev/shm/bench_report-XXXXXX"));
  Require(memory.isValid(), "no folder in memory");
  // Made in a process of its own, whose memory goes with it; the files stay.
  InOwnProcess([&] {
    SampleNetwork::Make(stations, memory.path());
    return true;
  });
  const Files files{memory.path() + QLatin1String(SampleNetwork::kInput),
                    memory.path() + QLatin1String(SampleNetwork::kReady), memory.filePath(QStringLiteral("output.obj")),
                    memory.filePath(QStringLiteral("store.fdb")), stations > 10000 ? 1 : 5};
  for (const Row& row : kRows) {
    const Result result = InOwnProcess([&] { return row.measure(files); });
    nlohmann::ordered_json line = {
        {"operation", row.operation},  {"stations", stations},  {"ms", result.time}, {"stick", row.stick},
        {"stick_ms", result.stick},    {"count", result.count}, {"unit", row.unit},  {"tables_kb", result.tablesMemory},
        {"peak_kb", result.peakMemory}};
    if (row.usesThreads) {
      line["wall_ms"] = result.wall;
      line["wall_2_ms"] = InOwnProcess([&] {
                            SetThreadCount(2);
                            return row.measure(files);
                          }).wall;
    }
    std::cout << line.dump() << std::endl;
  }
}

}  // namespace
}  // namespace dtsdb::bench

int main(int argc, char** argv) {
  std::vector<int> sizes;
  for (int i = 1; i < argc; ++i) sizes.push_back(std::atoi(argv[i]));
  if (sizes.empty()) sizes = {100, 1000, 10000};
  if (std::any_of(sizes.begin(), sizes.end(), [](int size) { return size < 100; })) {
    std::cerr << "usage: bench_report [STATIONS...], each at least 100\n";
    return 2;
  }
  try {
    for (const int stations : sizes) dtsdb::bench::Measure(stations);
  } catch (const std::exception& error) {
    std::cerr << "bench_report: " << error.what() << '\n';
    return 1;
  }
  return 0;
}

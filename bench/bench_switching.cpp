// One switching operation at a time on networks of 100, 1,000 and 10,000 stations: an incremental run beside a full
// one and beside the connected components of the whole node-breaker graph, found by Boost.Graph.
//
//     bench_switching [FOLDER]
//
// FOLDER is where the realtime store lies, by default in memory. Wall clock; the fastest of the rounds counts.

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/connected_components.hpp>
#include <cstdio>
#include <exception>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/growth_reporter.h"
#include "bench/sample_network.h"
#include "bench/store.h"
#include "bench/timing.h"
#include "include/chain.h"
#include "model/record_bits.h"
#include "model/text.h"
#include "topology/tp.h"

namespace dtsdb::bench {
namespace {

constexpr int kRounds = 20;
constexpr int kFullRounds = 5;

/// A component that is switched off and on again.
struct Operation {
  const char* name;
  int type;  ///< type code of tpSetCompStatus
  QByteArray id;
};

/// The fastest of `rounds` rounds of `job`, in milliseconds.
template <class Job>
double Fastest(int rounds, Job job) {
  double fastest = Milliseconds(job);
  for (int i = 1; i < rounds; ++i) fastest = std::min(fastest, Milliseconds(job));
  return fastest;
}

/// True when a run has to follow the opening of the breaker: nothing else joins its nodes. Leaves it closed.
bool PartsNodes(TP& topology, const QByteArray& id) {
  const bool parts = topology.tpSetCompStatus(id.constData(), 1, false) == 1;
  topology.tpSetCompStatus(id.constData(), 1, true);
  if (topology.tpChange() != 1) throw std::runtime_error("an incremental run failed");
  return parts;
}

/// A closed breaker that `accepts` takes and whose opening parts its nodes.
template <class Accepts>
QByteArray ChooseBreaker(DTSDB& network, TP& topology, Accepts accepts) {
  auto& breakers = *network.m_cbTable;
  for (int i = breakers.GetCount() / 2; i < breakers.GetCount(); ++i) {
    const CB& breaker = breakers[i];
    const QByteArray id = IdToBytes(breaker.id);
    if ((breaker.flags & CB_OPEN) == 0 && accepts(breaker) && PartsNodes(topology, id)) return id;
  }
  throw std::runtime_error("the network has no such breaker");
}

QByteArray ChooseCoupler(DTSDB& network, TP& topology) {
  return ChooseBreaker(network, topology, [](const CB& breaker) { return breaker.id.endsWith(QLatin1String("-CQ0")); });
}

/// The breaker of a bay whose circuit is a line in service.
QByteArray ChooseFeeder(DTSDB& network, TP& topology) {
  return ChooseBreaker(network, topology, [&](const CB& breaker) {
    if (!breaker.id.endsWith(QLatin1String("Q0"))) return false;
    const ND& circuit = network.m_ndTable->GetPh(breaker.iznd);
    if (circuit.r_nd_ln2 == -1) return false;
    const LN2& end = network.m_ln2Table->GetPh(network.m_rNdLn2Table->GetPh(circuit.r_nd_ln2).iln2);
    return network.m_lnTable->GetPh(end.iln).status == 0;
  });
}

/// A line in service without which its island falls in two: the only one of a station.
QByteArray ChooseSplittingLine(DTSDB& network) {
  auto& lines = *network.m_lnTable;
  std::map<QString, int> linesOf;
  for (int i = 0; i < lines.GetCount(); ++i) {
    if (lines[i].status & BranchKind<LN>::kOut) continue;
    ++linesOf[lines[i].st];
    ++linesOf[lines[i].zst];
  }
  for (int i = lines.GetCount() / 2; i < lines.GetCount(); ++i) {
    const LN& line = lines[i];
    const bool joins = line.status == 0 && network.m_bsTable->GetPh(line.ibs).island >= 0 &&
                       network.m_bsTable->GetPh(line.izbs).island >= 0;
    if (joins && (linesOf[line.st] == 1 || linesOf[line.zst] == 1)) return IdToBytes(line.id);
  }
  throw std::runtime_error("the network has no such line");
}

using Graph = boost::adjacency_list<boost::vecS, boost::vecS, boost::undirectedS>;

template <class Branch>
void AddBranches(Graph& graph, tTable<Branch>& branches) {
  using Kind = BranchKind<Branch>;
  for (int i = 0; i < branches.GetCount(); ++i) {
    const Branch& branch = branches[i];
    if (branch.status & (Kind::kOut | Kind::kOpen1 | Kind::kOpen2)) continue;
    boost::add_edge(static_cast<std::size_t>(branch.ind), static_cast<std::size_t>(branch.iznd), graph);
  }
}

/// The nodes, joined by closed breakers and branches in service.
Graph GraphOf(DTSDB& network) {
  Graph graph(static_cast<std::size_t>(network.m_ndTable->GetCount()));
  auto& breakers = *network.m_cbTable;
  for (int i = 0; i < breakers.GetCount(); ++i) {
    const CB& breaker = breakers[i];
    if (breaker.flags & CB_OPEN) continue;
    boost::add_edge(static_cast<std::size_t>(breaker.ind), static_cast<std::size_t>(breaker.iznd), graph);
  }
  AddBranches(graph, *network.m_lnTable);
  AddBranches(graph, *network.m_dlnTable);
  AddBranches(graph, *network.m_xfTable);
  AddBranches(graph, *network.m_zbrTable);
  return graph;
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

/// Switches off and on again, each followed by a run and its storing.
void MeasureOperation(TP& topology, dbDatabase* store, const Operation& operation, int stations, Results& results) {
  for (const bool on : {false, true}) {
    double change = 1e9;
    double write = 1e9;
    int levels = 0;
    for (int i = 0; i < kRounds; ++i) {
      if (topology.tpSetCompStatus(operation.id.constData(), operation.type, on) != 1) {
        throw std::runtime_error(std::string("no need to follow up the ") + operation.name);
      }
      change = std::min(change, Milliseconds([&] {
                          if (topology.tpChange() != 1) throw std::runtime_error("an incremental run failed");
                        }));
      levels = topology.getChangedKVCount();
      write = std::min(write, Milliseconds([&] { topology.tpWriteChangedData(store); }));
      topology.tpSetCompStatus(operation.id.constData(), operation.type, !on);
      if (topology.tpChange() != 1) throw std::runtime_error("an incremental run failed");
    }
    topology.tpSetCompStatus(operation.id.constData(), operation.type, on);
    topology.tpChange();
    const std::string name = std::string(operation.name) + (on ? " in" : " out");
    results.Add(name + ": tpChange", stations, change);
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
  const Graph graph = GraphOf(network);
  std::vector<int> component(boost::num_vertices(graph));
  results.Add("Boost.Graph connected_components", stations,
              Fastest(kFullRounds, [&] { boost::connected_components(graph, component.data()); }));
  results.Add("Boost.Graph, the graph made first", stations, Fastest(kFullRounds, [&] {
                const Graph made = GraphOf(network);
                boost::connected_components(made, component.data());
              }));

  Store store(folder + QStringLiteral("/switching.fdb"));
  network.WriteFastdb(store.Db());
  const Operation operations[] = {{"bus coupler", 1, ChooseCoupler(network, topology)},
                                  {"feeder", 1, ChooseFeeder(network, topology)},
                                  {"splitting line", 5, ChooseSplittingLine(network)}};
  for (const Operation& operation : operations) {
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

// The breaker flow: whole networks read, computed and stored, and the solution of one group of loops beside Eigen's.
//
//     bench_flow [FOLDER]
//
// The store of a network lies in FOLDER, by default in memory. The fastest round of each job counts.

#include <Eigen/Dense>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <stdexcept>

#include "bench/sample_network.h"
#include "bench/timing.h"
#include "breakerflow/cbflow.h"
#include "include/log_sink.h"
#include "rtdb/volma_rtdb.h"
#include "tests/breakerflow/breaker_graph.h"

namespace dtsdb::bench {
namespace {

constexpr int kRounds = 3;
constexpr float kAnyBalance = 1e9F;  // every set is computed

double Best(int rounds, const std::function<double()>& job) {
  double best = 1e300;
  for (int round = 0; round < rounds; ++round) best = std::min(best, job());
  return best;
}

// Whole networks

/// Gives each bus section the base voltage of its level: a generated network has no state.
void SetVoltages(DTSDB& network) {
  for (int i = 0; i < network.m_bsTable->GetCount(); ++i) {
    BS& section = (*network.m_bsTable)[i];
    if (section.ikv >= 0) section.v = network.m_kvTable->GetPh(section.ikv).vbase;
  }
}

int LoopBreakers(const cbFlow& flow) {
  int count = 0;
  for (const cbBreaker& breaker : flow.Breakers()) count += (breaker.flags & CB_LOOP) != 0 ? 1 : 0;
  return count;
}

void RunNetwork(int stations, const QString& folder) {
  const QTemporaryDir directory(folder + QStringLiteral("/bench_flow-XXXXXX"));
  if (!directory.isValid()) throw std::runtime_error("no folder to write in: " + folder.toStdString());
  DTSDB network;
  network.ReadObject(SampleNetwork::Of(stations).ReadyFile());
  SetVoltages(network);
  dbDatabase database;
  database.setErrorHandler([](int, char const* message, int, void*) {
    std::fprintf(stderr, "bench_flow: %s\n", message);
    std::exit(1);
  });
  const QByteArray file = directory.filePath(QStringLiteral("store.fdb")).toLocal8Bit();
  database.open(file.constData(), file.constData());
  network.WriteFastdb(&database);

  cbFlow flow(&database, kAnyBalance);
  double calculate = 1e300;
  const double load = Best(kRounds, [&] {
    const double time = Milliseconds([&] { flow.loadData(); });
    calculate = std::min(calculate, Milliseconds([&] { flow.calculate(); }));
    return time;
  });
  const double store = Best(kRounds, [&] {
    database.commit();
    for (float value : {1.0F, 0.0F}) {  // so that each row changes
      dbCursor<cb> cursor(&database, dbCursorForUpdate);
      cursor.select();
      for (cb* row = cursor.get(); row != nullptr; row = cursor.next()) {
        row->p = value - 1e6F;
        cursor.update();
      }
    }
    database.commit();
    return Milliseconds([&] { flow.storeData(); });
  });
  std::printf("%8d %9d %9d %8d %8d %10.1f %10.1f %10.1f\n", stations, static_cast<int>(flow.Breakers().size()),
              static_cast<int>(flow.Nodes().size()), flow.SetCount(), LoopBreakers(flow), load, calculate, store);
  std::fflush(stdout);
  database.close();
}

// One group of loops

/// A ring of `nodes` nodes with a chord at every fourth.
std::vector<std::pair<int, int>> Loops(int nodes) {
  std::vector<std::pair<int, int>> breakers;
  breakers.reserve(2 * static_cast<std::size_t>(nodes));
  for (int i = 0; i < nodes; ++i) breakers.emplace_back(i, (i + 1) % nodes);
  for (int i = 0; i + 2 < nodes; i += 4) breakers.emplace_back(i, i + 2);
  return breakers;
}

/// Eigen's ways to the same solution.
class EigenSolution {
 public:
  EigenSolution(const std::vector<std::pair<int, int>>& breakers, int nodes)
      : m_incidence(Eigen::MatrixXd::Zero(nodes - 1, static_cast<Eigen::Index>(breakers.size()))),
        m_currents(Eigen::MatrixXd::Zero(nodes - 1, 2)) {
    for (std::size_t j = 0; j < breakers.size(); ++j) {
      const auto [from, to] = breakers[j];
      if (from < nodes - 1) m_incidence(from, static_cast<Eigen::Index>(j)) = 1;
      if (to < nodes - 1) m_incidence(to, static_cast<Eigen::Index>(j)) = -1;
    }
    m_currents(0, 0) = 1;
    m_currents(0, 1) = 0.5;
  }

  /// By an orthogonal decomposition, which also copes with what hangs loose.
  double Orthogonal() const { return m_incidence.completeOrthogonalDecomposition().solve(m_currents)(0, 0); }
  /// By the matrix of the group, inverted.
  double Inverted() const {
    const Eigen::MatrixXf b = m_incidence.cast<float>();
    const Eigen::MatrixXf inverse = (b * b.transpose()).inverse();
    const Eigen::MatrixXf solution = b.transpose() * inverse;
    return (solution * m_currents.cast<float>())(0, 0);
  }
  /// By the same matrix, solved without inverting it: the least work.
  double Solved() const {
    const Eigen::MatrixXd squared = m_incidence * m_incidence.transpose();
    return (m_incidence.transpose() * squared.ldlt().solve(m_currents))(0, 0);
  }

 private:
  Eigen::MatrixXd m_incidence;
  Eigen::MatrixXd m_currents;
};

void RunGroup(int nodes) {
  const auto breakers = Loops(nodes);
  test::BreakerGraph graph(breakers);
  graph.Inject(0, 220);
  graph.Inject(nodes - 1, -220);
  graph.Calculate();
  const ndGroup group = graph.Probe().Groups().first();
  const EigenSolution eigen(breakers, nodes);
  // The answers are the same, or the comparison is none.
  const double flow = graph.P(0) / 220.0;
  for (const double other : {eigen.Orthogonal(), eigen.Inverted(), eigen.Solved()}) {
    if (std::abs(other - flow) > 1e-3) throw std::runtime_error("the solutions differ");
  }

  const int repetitions = std::max(1, 200000 / (nodes * nodes));
  const auto time = [repetitions](const std::function<void()>& job) {
    return 1000 * Best(5, [&] {
             return Milliseconds([&] {
                      for (int i = 0; i < repetitions; ++i) job();
                    }) /
                    repetitions;
           });
  };
  volatile double keep = 0;
  const double own = time([&] { graph.Probe().CalculateCBCurrent(0, group); });
  const double inverted = time([&] { keep = eigen.Inverted(); });
  const double orthogonal = time([&] { keep = eigen.Orthogonal(); });
  const double solved = time([&] { keep = eigen.Solved(); });
  std::printf("%6d %9d %12.1f %14.1f %16.1f %12.1f %8.2f\n", nodes, static_cast<int>(breakers.size()), own, inverted,
              orthogonal, solved, own / inverted);
  std::fflush(stdout);
}

void Run(const QString& folder) {
  std::printf("Groups of loops, microseconds\n%6s %9s %12s %14s %16s %12s %8s\n", "nodes", "breakers", "breaker flow",
              "Eigen inverse", "Eigen orthogonal", "Eigen solve", "ratio");
  for (const int nodes : {4, 8, 15, 30, 60, 100, 200, 400}) RunGroup(nodes);
  std::printf("\nNetworks, milliseconds\n%8s %9s %9s %8s %8s %10s %10s %10s\n", "stations", "breakers", "nodes", "sets",
              "on loops", "loadData", "calculate", "storeData");
  for (const int stations : {1000, 10000}) RunNetwork(stations, folder);
}

}  // namespace
}  // namespace dtsdb::bench

int main(int argc, char** argv) {
  dtsdb::SetLogSink([](dtsdb::LogKind, std::string_view) {});  // nobody reads the log of a benchmark
  // Before a network is made: its files are made in a directory that becomes the current one.
  const QString folder = argc > 1 ? QDir(QString::fromLocal8Bit(argv[1])).absolutePath() : QStringLiteral("/dev/shm");
  try {
    dtsdb::bench::Run(folder);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench_flow: %s\n", error.what());
    return 1;
  }
  return 0;
}

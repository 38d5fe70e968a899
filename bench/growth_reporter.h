/// \file
/// How the time of an operation grows with the network.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace dtsdb::bench {

/// Time in seconds by number of stations.
using TimeBySize = std::map<int, double>;

/// The exponent e of the power n^e that fits the times best: 1 for linear growth, 2 for quadratic. 0 with fewer than
/// two sizes.
double FittedExponent(const TimeBySize& times);

/// Prints the runs as usual and, behind the last one, a table of the growth of each operation.
class GrowthReporter : public benchmark::ConsoleReporter {
 public:
  /// In colour on a terminal only.
  GrowthReporter();

  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  std::vector<std::string> m_operations;  ///< in the order of their first run
  std::map<std::string, TimeBySize> m_times;
};

}  // namespace dtsdb::bench

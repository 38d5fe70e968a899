#include "bench/growth_reporter.h"

#include <fmt/ostream.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>

namespace dtsdb::bench {

double FittedExponent(const TimeBySize& times) {
  if (times.size() < 2) return 0.0;
  const auto count = static_cast<double>(times.size());
  double meanX = 0.0;
  double meanY = 0.0;
  for (const auto& [stations, time] : times) {
    meanX += std::log(stations) / count;
    meanY += std::log(time) / count;
  }
  double above = 0.0;
  double below = 0.0;
  for (const auto& [stations, time] : times) {
    const double x = std::log(stations) - meanX;
    above += x * (std::log(time) - meanY);
    below += x * x;
  }
  return above / below;
}

GrowthReporter::GrowthReporter() : ConsoleReporter(isatty(STDOUT_FILENO) != 0 ? OO_ColorTabular : OO_Tabular) {}

void GrowthReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    if (run.error_occurred || run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
    const std::string& operation = run.run_name.function_name;
    if (m_times.count(operation) == 0) m_operations.push_back(operation);
    const double time = run.real_accumulated_time / static_cast<double>(run.iterations);
    const auto [known, isNew] = m_times[operation].emplace(std::stoi(run.run_name.args), time);
    if (!isNew) known->second = std::min(known->second, time);  // of repetitions, the least disturbed
  }
}

void GrowthReporter::Finalize() {
  ConsoleReporter::Finalize();
  std::ostream& out = GetOutputStream();
  fmt::print(out, "\n{:<12} {:>9} {:>12} {:>14} {:>16}\n", "Growth", "stations", "time", "per station",
             "to size before");
  for (const std::string& operation : m_operations) {
    const TimeBySize& times = m_times[operation];
    double before = 0.0;
    for (const auto& [stations, time] : times) {
      fmt::print(out, "{:<12} {:>9} {:>9.3f} ms {:>11.2f} us", operation, stations, time * 1e3, time * 1e6 / stations);
      if (before > 0.0) fmt::print(out, " {:>14.1f} x", time / before);
      fmt::print(out, "\n");
      before = time;
    }
    if (times.size() > 1) fmt::print(out, "{:<12} grows as n^{:.2f}\n", operation, FittedExponent(times));
  }
}

}  // namespace dtsdb::bench

#include "analysis/screening.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <tuple>
#include <utility>

#include "analysis/internal/guard.h"
#include "analysis/internal/outage_events.h"
#include "analysis/internal/screener.h"
#include "model/threads.h"

namespace dtsdb::analysis {
namespace {

using internal::Screener;
using Screeners = std::vector<std::unique_ptr<Screener>>;

/// The outages that several threads work off together, each taking the next one that nobody has taken.
class Work {
 public:
  Work(const std::vector<Outage>& outages, const ScreeningOptions& options)
      : m_outages(outages), m_options(options), m_results(outages.size()) {}

  void Do(const Screeners& screeners) {
    RunOnThreads(static_cast<int>(screeners.size()),
                 [&](int i) { WorkOff(*screeners[static_cast<std::size_t>(i)], i == 0); });
  }

  /// The results in the order of the outages, or the first error.
  Result<std::vector<OutageResult>> TakeResults() {
    if (m_isCancelled) return tl::unexpected(Error{ErrorCode::kUsage, "the screening was cancelled", ""});
    std::vector<OutageResult> results;
    results.reserve(m_results.size());
    for (auto& result : m_results) {
      if (result && !*result) return tl::unexpected(result->error());
      if (result) results.push_back(std::move(**result));
    }
    return results;
  }

 private:
  void WorkOff(Screener& screener, bool reports) {
    while (!m_hasFailed) {
      const std::size_t i = m_next++;
      if (i >= m_outages.size()) return;
      m_results[i] = internal::Guarded(OutageText(m_outages[i]), [&] { return screener.Try(m_outages[i]); });
      if (!*m_results[i]) m_hasFailed = true;
      ++m_done;
      if (!reports) continue;
      if (m_options.progress) m_options.progress(m_done);
      if (m_options.isCancelled && m_options.isCancelled()) Cancel();
    }
  }

  void Cancel() {
    m_isCancelled = true;
    m_hasFailed = true;
  }

  const std::vector<Outage>& m_outages;
  const ScreeningOptions& m_options;
  std::vector<std::optional<Result<OutageResult>>> m_results;
  std::atomic<std::size_t> m_next = 0;
  std::atomic<std::size_t> m_done = 0;
  std::atomic<bool> m_hasFailed = false;
  bool m_isCancelled = false;  // on the caller's thread
};

/// So many, and at least one.
Result<Screeners> MakeScreeners(const Model& model, std::size_t count) {
  Screeners screeners;
  do {
    Result<std::unique_ptr<Screener>> screener = Screener::Make(model);
    if (!screener) return tl::unexpected(screener.error());
    screeners.push_back(std::move(*screener));
  } while (screeners.size() < count);
  return screeners;
}

Result<void> RequireKnown(const Model& model, const std::vector<Outage>& outages) {
  for (const Outage& outage : outages) {
    for (const OutageComponent& component : outage) {
      const std::string why = internal::WhyUnknown(model.Tables(), component);
      if (why.empty()) continue;
      return tl::unexpected(Error{ErrorCode::kUnknownComponent, why, OutageText({component})});
    }
  }
  return {};
}

/// True when the left one is to stand in front of the right one, whose texts are given.
bool IsWorse(const OutageResult& left, const std::string& leftText, const OutageResult& right,
             const std::string& rightText) {
  const auto loss = [](const OutageResult& result) {
    return std::tuple(result.failure.empty(), -result.totals.p, -result.totals.buses);
  };
  if (loss(left) != loss(right)) return loss(left) < loss(right);
  return leftText < rightText;
}

void SortByLoss(std::vector<OutageResult>& results) {
  std::vector<std::pair<std::string, OutageResult>> named;
  named.reserve(results.size());
  for (OutageResult& result : results) named.emplace_back(OutageText(result.outage), std::move(result));
  std::stable_sort(named.begin(), named.end(), [](const auto& left, const auto& right) {
    return IsWorse(left.second, left.first, right.second, right.first);
  });
  for (std::size_t i = 0; i < named.size(); ++i) results[i] = std::move(named[i].second);
}

std::size_t PairCount(const std::vector<Outage>& outages) {
  return outages.empty() ? 0 : outages.size() * (outages.size() - 1) / 2;
}

Outage PairOf(const std::vector<Outage>& outages, std::size_t first, std::size_t second) {
  Outage pair = outages[first];
  pair.insert(pair.end(), outages[second].begin(), outages[second].end());
  return pair;
}

}  // namespace

std::string OutageText(const Outage& outage) {
  std::vector<std::string> texts;
  for (const OutageComponent& component : outage) texts.push_back(component.table + " " + component.identity);
  return fmt::format("{}", fmt::join(texts, " + "));
}

const std::vector<std::string>& OutageTables() {
  static const std::vector<std::string> tables = {"LN", "XF", "DLN", "ZBR", "CB", "BUS", "UN"};
  return tables;
}

Result<std::vector<Outage>> SingleOutages(const Model& model, const std::vector<std::string>& tables) {
  const std::vector<std::string>& known = OutageTables();
  for (const std::string& table : tables) {
    if (std::find(known.begin(), known.end(), table) != known.end()) continue;
    return tl::unexpected(Error{ErrorCode::kUsage, internal::WhyUnknown(model.Tables(), {table, ""}), table});
  }
  return internal::Guarded(model.Name(), [&]() -> Result<std::vector<Outage>> {
    Model target = model;
    if (const Result<void> good = target.RequireGood(); !good) return tl::unexpected(good.error());
    std::vector<Outage> outages;
    for (const std::string& table : tables) {
      for (OutageComponent& component : internal::InService(target.Tables(), table)) {
        outages.push_back({std::move(component)});
      }
    }
    return outages;
  });
}

std::vector<Outage> AllPairs(const std::vector<Outage>& outages) {
  std::vector<Outage> pairs;
  pairs.reserve(PairCount(outages));
  for (std::size_t i = 0; i < outages.size(); ++i) {
    for (std::size_t j = i + 1; j < outages.size(); ++j) pairs.push_back(PairOf(outages, i, j));
  }
  return pairs;
}

std::vector<Outage> SamplePairs(const std::vector<Outage>& outages, std::size_t count, std::uint64_t seed) {
  const std::size_t n = outages.size();
  if (count >= PairCount(outages)) return AllPairs(outages);
  // The engine is the same everywhere, the distributions of the standard library aren't.
  std::mt19937_64 engine(seed);
  std::set<std::pair<std::size_t, std::size_t>> chosen;
  while (chosen.size() < count) {
    const std::size_t i = engine() % n;
    const std::size_t j = engine() % n;
    if (i != j) chosen.emplace(std::min(i, j), std::max(i, j));
  }
  std::vector<Outage> pairs;
  pairs.reserve(chosen.size());
  for (const auto& [i, j] : chosen) pairs.push_back(PairOf(outages, i, j));
  return pairs;
}

Result<Screening> Screen(const Model& model, const std::vector<Outage>& outages, const ScreeningOptions& options) {
  return internal::Guarded(model.Name(), [&]() -> Result<Screening> {
    Model target = model;
    if (const Result<void> good = target.RequireGood(); !good) return tl::unexpected(good.error());
    if (const Result<void> known = RequireKnown(target, outages); !known) return tl::unexpected(known.error());
    Result<Screeners> screeners = MakeScreeners(target, std::min<std::size_t>(options.jobs, outages.size()));
    if (!screeners) return tl::unexpected(screeners.error());
    Work work(outages, options);
    work.Do(*screeners);
    Result<std::vector<OutageResult>> results = work.TakeResults();
    if (!results) return tl::unexpected(results.error());
    SortByLoss(*results);
    const RunReport& first = screeners->front()->First();
    return Screening{std::move(*results), first.findings, first.leftOut};
  });
}

}  // namespace dtsdb::analysis

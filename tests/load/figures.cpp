#include "tests/load/figures.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace dtsdb::load {
namespace {

using Json = nlohmann::ordered_json;

/// By how much something may grow from the first tenth behind the warm-up to the last one.
struct Bound {
  double share = 0;
  double slack_mb = 0;
};
constexpr Bound kOfMemory{0.10, 8};
/// A file has the room that was ever needed at once, so it grows by ever rarer steps. Some hundred megabytes are
/// written in it each minute: pages that never came back would soon go beyond that.
constexpr Bound kOfFile{0.25, 16};
/// Shorter than so many seconds behind the warm-up growth isn't judged.
constexpr double kShortest_s = 25;

/// The samples behind the warm-up.
std::vector<Sample> Judged(const Figures& figures) {
  std::vector<Sample> samples;
  for (const Sample& sample : figures.samples) {
    if (sample.second >= figures.warmUp_s) samples.push_back(sample);
  }
  return samples;
}

bool IsLongEnough(const std::vector<Sample>& samples) {
  return !samples.empty() && samples.back().second - samples.front().second >= kShortest_s;
}

/// The largest value of the first tenth of the samples, and of the last.
std::pair<double, double> EndsOf(const std::vector<Sample>& samples, double Sample::*value) {
  const auto tenth = static_cast<std::ptrdiff_t>(std::max<std::size_t>(1, samples.size() / 10));
  const auto less = [value](const Sample& a, const Sample& b) { return a.*value < b.*value; };
  const auto first = std::max_element(samples.begin(), samples.begin() + tenth, less);
  const auto last = std::max_element(samples.end() - tenth, samples.end(), less);
  return {(*first).*value, (*last).*value};
}

Promise Flat(const Figures& figures, const std::string& what, double Sample::*value, const Bound& bound) {
  const std::vector<Sample> samples = Judged(figures);
  if (!IsLongEnough(samples)) return {what + " stays flat", false, true};
  const auto [first, last] = EndsOf(samples, value);
  return {fmt::format("{} stays flat: {:.1f} MB, {:.1f} MB at the end", what, first, last), true,
          last <= first * (1 + bound.share) + bound.slack_mb};
}

struct Row {
  std::string name;
  std::string value;
};

std::vector<Row> Rows(const Figures& f) {
  const auto& s = f.sums;
  return {
      {"stations, components switched", fmt::format("{}, {}", f.stations, f.components)},
      {"duration, events a second",
       fmt::format("{:.0f} s, {:.0f}", f.seconds, static_cast<double>(f.committed) / f.seconds)},
      {"restarts of the task", fmt::format("{}, every other one by SIGKILL", f.restarts)},
      {"events written", fmt::format("{}", f.committed)},
      {"  in the log, once", fmt::format("{}", s.logged)},
      {"  in full runs, which keep no log", fmt::format("{}", s.inFullRuns)},
      {"  lost, doubled", fmt::format("{}, {}", s.lost, s.doubled)},
      {"rows taken again at starts", fmt::format("{}", s.repeated)},
      {"events committed without a line", fmt::format("{}", s.unreported)},
      {"runs, full ones behind a start", fmt::format("{}, {}", s.runs, s.fullRuns)},
      {"event to result: median, 99 %, worst",
       fmt::format("{:.1f} ms, {:.0f} ms, {:.0f} ms", f.latency.median, f.latency.most99, f.latency.worst)},
      {"  the same over a start of the task",
       fmt::format("{:.0f} ms, {:.0f} ms, {:.0f} ms", f.overStarts.median, f.overStarts.most99, f.overStarts.worst)},
      {"writers: slowest commit", fmt::format("{:.1f} ms", f.slowestWrite_ms)},
      {"readers: slowest first row", fmt::format("{:.2f} ms, of {} reads", f.slowestRow_ms, f.rowReads)},
      {"readers: slowest table", fmt::format("{:.1f} ms, of {} reads", f.slowestTable_ms, f.tableReads)},
      {"page: viewers served, events", fmt::format("{} of {}, {}", f.viewersServed, f.viewers, f.viewerEvents)},
      {"prunings, slowest", fmt::format("{}, {:.0f} ms", f.prunings, f.slowestPrune_ms)},
  };
}

/// The largest values of each part of the time.
std::string SeriesAsText(const Figures& figures) {
  std::string text = "\n  second     run MB   serve MB  reader MB  writer MB   store MB\n";
  const double step = std::max(1.0, std::min(300.0, figures.seconds / 10));
  Sample most;
  for (std::size_t i = 0; i < figures.samples.size(); ++i) {
    const Sample& sample = figures.samples[i];
    for (double Sample::*value :
         {&Sample::run_mb, &Sample::serve_mb, &Sample::reader_mb, &Sample::writer_mb, &Sample::file_mb}) {
      most.*value = std::max(most.*value, sample.*value);
    }
    const bool isLast = i + 1 == figures.samples.size();
    if (!isLast && sample.second < most.second + step) continue;
    text += fmt::format("{:8.0f} {:10.1f} {:10.1f} {:10.1f} {:10.1f} {:10.1f}\n", sample.second, most.run_mb,
                        most.serve_mb, most.reader_mb, most.writer_mb, most.file_mb);
    most = {sample.second};
  }
  return text;
}

}  // namespace

std::vector<Promise> Promises(const Figures& f) {
  const auto& s = f.sums;
  const bool everyOne = s.logged + s.inFullRuns == f.committed && s.written == f.committed;
  return {
      {"every event is accounted for once: in the log, or in a full run", true,
       everyOne && s.lost == 0 && s.doubled == 0},
      {"no run fails", true, s.failedRuns == 0 && f.faults.empty()},
      {"every component is in the state of its last event", true, f.wrongStates == 0},
      {"the last topology is that of a full run", true, f.differences == 0},
      {"no reader sees half a commit", true, f.torn == 0 && f.rowReads > 0},
      {"all viewers are served to the end", true, f.viewersServed == f.viewers},
      {"the store is good", true, f.goodStore},
      Flat(f, "the memory of run", &Sample::run_mb, kOfMemory),
      Flat(f, "the memory of serve", &Sample::serve_mb, kOfMemory),
      Flat(f, "the memory of a reader", &Sample::reader_mb, kOfMemory),
      Flat(f, "the memory of a writer", &Sample::writer_mb, kOfMemory),
      Flat(f, "the store's file", &Sample::file_mb, kOfFile),
  };
}

bool AllHold(const Figures& figures) {
  const std::vector<Promise> promises = Promises(figures);
  return std::all_of(promises.begin(), promises.end(), [](const Promise& p) { return !p.isJudged || p.holds; });
}

std::string FiguresAsText(const Figures& figures) {
  std::string text;
  for (const auto& [name, value] : Rows(figures)) text += fmt::format("{:<40}{}\n", name, value);
  text += SeriesAsText(figures) + "\n";
  for (const Promise& promise : Promises(figures)) {
    text += fmt::format("{:<12}{}\n",
                        !promise.isJudged ? "too short"
                        : promise.holds   ? "holds"
                                          : "BROKEN",
                        promise.text);
  }
  for (const std::string& fault : figures.faults) text += "fault: " + fault + "\n";
  return text;
}

std::string FiguresAsJson(const Figures& figures) {
  Json object;
  for (const auto& [name, value] : Rows(figures)) object["figures"][name.substr(name.find_first_not_of(' '))] = value;
  for (const Sample& s : figures.samples) {
    object["samples"].push_back({{"second", s.second},
                                 {"run_mb", s.run_mb},
                                 {"serve_mb", s.serve_mb},
                                 {"reader_mb", s.reader_mb},
                                 {"writer_mb", s.writer_mb},
                                 {"store_mb", s.file_mb}});
  }
  for (const Promise& promise : Promises(figures)) {
    object["promises"].push_back({{"text", promise.text}, {"judged", promise.isJudged}, {"holds", promise.holds}});
  }
  object["faults"] = figures.faults;
  object["good"] = AllHold(figures);
  return object.dump(2) + "\n";
}

}  // namespace dtsdb::load

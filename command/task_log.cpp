#include "command/task_log.h"

#include <fmt/format.h>

#include <QDateTime>
#include <cmath>
#include <nlohmann/json.hpp>

#include "formats/messages.h"
#include "formats/text_layout.h"

namespace dtsdb::tools {
namespace {

using Json = nlohmann::ordered_json;
using analysis::RunKind;
using analysis::RunReason;

std::string Now() { return QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toStdString(); }

void WriteLine(const std::string& line) { WriteResult(Format::kText, Now() + " " + OneLine(line) + "\n"); }

/// Writes an event. `properties` is its object without the first two, which all have.
void WriteEvent(const char* event, const Json& properties) {
  Json object = {{"time", Now()}, {"event", event}};
  object.update(properties);
  WriteUtf8(object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
}

Json TextOrNull(const std::string& text) { return text.empty() ? Json() : Json(text); }
Json NumberOrNull(int number) { return number == -1 ? Json() : Json(number); }
double Tenths(double milliseconds) { return std::round(milliseconds * 10) / 10; }

const char* KindName(RunKind kind) {
  switch (kind) {
    case RunKind::kNothing:
      return "nothing";
    case RunKind::kIncremental:
      return "incremental";
    case RunKind::kFull:
      break;
  }
  return "full";
}

const char* ReasonName(RunReason reason) {
  switch (reason) {
    case RunReason::kNothingWaiting:
      return "nothing_waiting";
    case RunReason::kCertain:
      return "certain";
    case RunReason::kAsIs:
      return "as_is";
    case RunReason::kAsked:
      return "asked";
    case RunReason::kOpenEnd:
      return "open_end";
    case RunReason::kZeroImpedance:
      return "zero_impedance";
    case RunReason::kManyChanges:
      return "many_changes";
    case RunReason::kIncrementalFailed:
      return "incremental_failed";
    case RunReason::kFailedBefore:
      break;
  }
  return "failed_before";
}

Json Properties(const RunLine& line) {
  const analysis::RunReport* report = line.report;
  return {{"run", line.run},
          {"kind", report != nullptr ? KindName(report->kind) : "failed"},
          {"reason", report != nullptr ? Json(ReasonName(report->reason)) : Json()},
          {"cause", report != nullptr ? TextOrNull(report->cause) : Json()},
          {"rows", line.rows},
          {"levels", line.levels},
          {"sections", line.sections},
          {"log_first", NumberOrNull(line.logFirst)},
          {"log_last", NumberOrNull(line.logLast)},
          {"worked_ms", Tenths(line.worked)},
          {"stored_ms", Tenths(line.stored)}};
}

}  // namespace

void TaskLog::Start(int islands, double worked, double stored) const {
  if (IsJson()) {
    WriteEvent("start", {{"islands", islands}, {"worked_ms", Tenths(worked)}, {"stored_ms", Tenths(stored)}});
    return;
  }
  WriteLine(fmt::format("start: full run, {}, {:.1f} ms, stored in {:.1f} ms", Counted(islands, "live island"), worked,
                        stored));
}

void TaskLog::Run(const RunLine& line) const {
  if (IsJson()) {
    WriteEvent("run", Properties(line));
    return;
  }
  const std::string log = line.logFirst != -1 ? fmt::format("log {}..{}", line.logFirst, line.logLast) : "no log";
  WriteLine(fmt::format("run {}: {}, {}, {}, {} changed, {}, {:.1f} ms, stored in {:.1f} ms", line.run,
                        line.report != nullptr ? line.report->Text() : "failed", Counted(line.rows, "row"),
                        Counted(line.levels, "level"), Counted(line.sections, "section"), log, line.worked,
                        line.stored));
}

void TaskLog::Followed(int run, const analysis::FollowedBranch& followed) const {
  const auto& [branch, breaker, on] = followed;
  if (IsJson()) {
    WriteEvent("branch", {{"run", run}, {"branch", branch}, {"breaker", breaker}, {"in_service", on}});
    return;
  }
  WriteLine(fmt::format("run {}: ZBR {} {} with its breaker {}", run, branch, on ? "in" : "out", breaker));
}

void TaskLog::Differs(int run, const analysis::Difference& difference) const {
  const auto& [table, identity, here, there] = difference;
  if (IsJson()) {
    WriteEvent("difference", {{"run", run}, {"table", table}, {"id", identity}, {"here", here}, {"full", there}});
    return;
  }
  WriteLine(fmt::format("run {} differs from a full one: {} {}: {}; full run: {}", run, table, identity, here, there));
}

void TaskLog::ReadAgain(Reload why) const {
  if (IsJson()) {
    WriteEvent("reload", {{"reason", why == Reload::kSignal ? "signal" : "replaced"}});
    return;
  }
  WriteLine(why == Reload::kSignal ? "reload: on SIGHUP" : "reload: the model in the database was replaced");
}

void TaskLog::Message(const std::string& text, std::optional<int> run) const {
  if (IsJson()) {
    WriteEvent("message", {{"run", run ? Json(*run) : Json()}, {"text", text}});
    return;
  }
  WriteMessage(run ? fmt::format("run {}: {}", *run, text) : text);
}

}  // namespace dtsdb::tools

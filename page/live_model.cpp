#include "page/live_model.h"

#include <QDateTime>
#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "analysis/topology.h"

namespace dtsdb::page {
namespace {

using analysis::Error;
using analysis::ErrorCode;
using analysis::Model;
using analysis::Result;
using analysis::Validation;
using LiveJson = nlohmann::ordered_json;

constexpr std::size_t kMostLines = 100;

std::string Compact(const LiveJson& json) { return json.dump(-1, ' ', false, LiveJson::error_handler_t::replace); }

std::string Banner(const char* kind, const std::string& text) { return Compact({{"kind", kind}, {"text", text}}); }

/// What a validation finds, which numbers a model anew: one that is good already keeps its numbers, for the copy is
/// validated.
Result<Validation> FindingsOf(Model& model) {
  if (!model.IsGood()) return model.Validate();
  Result<Model> copy = model.Copy();
  if (!copy) return tl::unexpected(copy.error());
  return copy->Validate();
}

/// Gives a good model a topology where it has none.
Result<void> CompleteTopology(Model& model) {
  if (!model.IsGood() || analysis::HasTopology(model)) return {};
  if (const auto topology = analysis::WorkOutTopology(model); !topology) return tl::unexpected(topology.error());
  return {};
}

}  // namespace

Result<std::unique_ptr<LiveModel>> LiveModel::Show(const Model& model, Subject subject) {
  std::unique_ptr<LiveModel> live(new LiveModel(model.Name(), std::move(subject), nullptr));
  if (const auto taken = live->Take(model); !taken) return tl::unexpected(taken.error());
  return live;
}

Result<std::unique_ptr<LiveModel>> LiveModel::Follow(const std::string& database, Subject subject, EventHub& hub) {
  std::unique_ptr<LiveModel> live(new LiveModel("rtdb:" + database, std::move(subject), &hub));
  live->m_database = std::make_unique<FollowedDatabase>(database);
  DatabaseLook look = live->m_database->Look();
  if (look.kind != DatabaseLook::Kind::kRead) {
    return tl::unexpected(Error{ErrorCode::kFile, look.why, database});
  }
  if (const auto taken = live->Take(Model::Of(look.tables, live->m_name)); !taken) {
    return tl::unexpected(taken.error());
  }
  return live;
}

std::shared_ptr<const LiveState> LiveModel::Now() const {
  const std::lock_guard lock(m_mutex);
  return m_now;
}

void LiveModel::Look() {
  if (!m_database) return;
  DatabaseLook look = m_database->Look();
  switch (look.kind) {
    case DatabaseLook::Kind::kSame:
      break;
    case DatabaseLook::Kind::kRead:
      TakeRead(std::move(look));
      break;
    case DatabaseLook::Kind::kLost:
      ShowTrouble("vanished", look.why);
      break;
    case DatabaseLook::Kind::kNewerLayout:
      ShowTrouble("columns", look.why + "; start a newer dtsdb");
      break;
  }
}

/// Another grid than before: nothing that is known of the last one holds.
Result<void> LiveModel::Take(const Model& model) {
  Model own = model;
  const Result<Validation> found = FindingsOf(own);
  if (!found) return tl::unexpected(found.error());
  if (const auto complete = CompleteTopology(own); !complete && own.IsGood()) return complete;
  SettleTables(own.Tables());
  m_turn = std::make_shared<std::mutex>();
  Documents documents(own, *found, m_subject, m_version + 1);
  Publish(std::make_shared<const LiveState>(own, std::move(documents), m_turn));
  return {};
}

/// The grid that is known, in another state.
Result<void> LiveModel::TakeLater(const Model& model) {
  Model own = model;
  if (const auto good = own.RequireGood(); !good) return good;
  if (const auto complete = CompleteTopology(own); !complete) return complete;
  SettleTables(own.Tables());
  Publish(Now()->InTurn([&](const Model&, const Documents& documents) {
    return std::make_shared<const LiveState>(own, documents.Later(own, m_version + 1), m_turn);
  }));
  return {};
}

void LiveModel::TakeRead(DatabaseLook look) {
  const std::shared_ptr<const LiveState> before = Now();
  m_changed.insert(m_changed.end(), look.changed.begin(), look.changed.end());
  std::sort(m_changed.begin(), m_changed.end());
  m_changed.erase(std::unique(m_changed.begin(), m_changed.end()), m_changed.end());
  const CommitLog log = before->InTurn([&](const Model& model, const Documents&) {
    return DescribeCommit(model.Tables(), look.tables, m_changed, kMostLines);
  });
  if (log.isSame && !log.isOtherGrid) return EndTrouble();
  const Model model = Model::Of(look.tables, m_name);
  const bool isLater = !log.isOtherGrid && model.IsGood();
  if (const auto taken = isLater ? TakeLater(model) : Take(model); !taken) {
    return ShowTrouble("vanished", taken.error().message + "; the page shows what was there before");
  }
  EndTrouble();
  if (!isLater) Send("banner", Banner("replaced", "The model has been replaced by another one: load the page anew."));
  SendCommit(log, isLater ? ChangesSince(*before) : Changes());
}

Changes LiveModel::ChangesSince(const LiveState& before) const {
  return Now()->InTurnWith(before, [](const Documents& now, const Documents& then) { return now.ChangesSince(then); });
}

void LiveModel::Publish(std::shared_ptr<const LiveState> state) {
  m_version = state->Version();
  {
    const std::lock_guard lock(m_mutex);
    m_now = std::move(state);
  }
  Greet();
}

/// What new viewers see too, until it has ended.
void LiveModel::ShowTrouble(const char* kind, const std::string& text) {
  const std::string data = Banner(kind, text);
  if (m_trouble && *m_trouble == *MakeEvent("banner", data)) return;
  m_trouble = MakeEvent("banner", data);
  Send("banner", data);
}

void LiveModel::EndTrouble() {
  m_changed.clear();
  if (!std::exchange(m_trouble, nullptr)) return;
  Send("banner", Banner("back", "The page shows the database again."));
}

void LiveModel::SendCommit(const CommitLog& log, const Changes& changes) {
  LiveJson lines = LiveJson::array();
  const auto add = [&](const std::string& table, const std::string& id, const std::string& text) {
    if (lines.size() < kMostLines) lines.push_back({{"table", table}, {"id", id}, {"text", text}});
  };
  for (const LogLine& line : log.switching) add(line.table, line.id, line.text);
  for (const Thing& thing : changes.becameDead) add(thing.table, thing.id, "dead");
  for (const Thing& thing : changes.becameLive) add(thing.table, thing.id, "live");
  for (const LogLine& line : log.others) add(line.table, line.id, line.text);
  Send("commit", Compact({{"version", m_version},
                          {"time", QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toStdString()},
                          {"count", log.count + changes.becameDead.size() + changes.becameLive.size()},
                          {"changes", std::move(lines)},
                          {"stations", changes.stations}}));
}

void LiveModel::Send(const char* name, const std::string& data) {
  Greet();
  if (m_hub != nullptr) m_hub->Send(MakeEvent(name, data), MakeEvent("hello", Compact({{"version", m_version}})));
}

void LiveModel::Greet() {
  if (m_hub == nullptr) return;
  std::vector<EventText> greeting{MakeEvent("hello", Compact({{"version", m_version}}))};
  if (m_trouble) greeting.push_back(m_trouble);
  m_hub->Greet(std::move(greeting));
}

}  // namespace dtsdb::page

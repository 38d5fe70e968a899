#include "tests/topology/scenario_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "analysis/careful_runner.h"
#include "formats/catalog.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "tests/topology/list_checks.h"
#include "tests/topology/results.h"

namespace dtsdb::test {
namespace {

using tools::IdText;

constexpr const char* kNone = "none";

std::string Join(const std::vector<std::string>& words, std::size_t from) {
  return fmt::format(
      "{}", fmt::join(words.begin() + static_cast<std::ptrdiff_t>(std::min(from, words.size())), words.end(), " "));
}

/// The texts one behind the other, or "none".
std::string Listed(const std::vector<std::string>& texts, const char* between = " | ") {
  return texts.empty() ? kNone : fmt::format("{}", fmt::join(texts, between));
}

int WholeNumber(const std::string& word) {
  int number = 0;
  const std::string fault = tools::ParseNumber(word, number);
  if (!fault.empty()) throw ScenarioError(fault);
  return number;
}

/// Calls `visit` with the record called `id` of the table called `table`.
template <class Visit>
void VisitRecord(DTSDB& database, const std::string& table, const std::string& id, Visit visit) {
  bool found = false;
  const TableKind kind = tools::NamedTable(table);
  ForEachTable(database, [&]<class T>(tTable<T>& records) {
    if (T::kKind != kind) return;
    for (int i = 0; i < records.GetCount() && !found; ++i) {
      found = tools::KeyText(records[i]) == id;
      if (found) visit(records[i]);
    }
  });
  if (!found) throw ScenarioError("table " + table + " has no record '" + id + "'");
}

/// Calls `visit` with the field of `record` that is called `name`.
template <class Record, class Visit>
void VisitField(Record& record, const std::string& name, Visit visit) {
  bool found = false;
  ForEachField(record, [&](const FieldInfo& field, auto& value) {
    if (field.name != name) return;
    found = true;
    visit(value);
  });
  if (!found) throw ScenarioError("there is no field '" + name + "'");
}

std::string KindName(int kind) {
  const std::string name = TableName(kind);
  return name.empty() ? std::to_string(kind) : name;
}

template <class Record>
concept HasOneSection = requires(const Record& record) {
  record.ibs;
};
template <class Record>
concept HasTwoSections = HasOneSection<Record> && requires(const Record& record) {
  record.izbs;
};

}  // namespace

bool ScenarioRun::Do(const Statement& statement) {
  m_line = statement.line;
  try {
    Obey(statement);
    return true;
  } catch (const std::exception& error) {
    Fail(error.what());
    return false;
  }
}

void ScenarioRun::Obey(const Statement& statement) {
  if (m_network.Take(statement) || Act(statement)) return;
  if (statement.words.front() == "broken") throw ScenarioError(statement.text);
  if (!m_tp) throw ScenarioError("'" + statement.words.front() + "' in front of the first 'run full'");
  if (!Expect(statement)) throw ScenarioError("there is no statement '" + statement.words.front() + "'");
}

void ScenarioRun::End() {
  ExpectNothingLeft("message", m_messages);
  if (m_log.asked) ExpectNothingLeft("log row", m_log);
  if (m_differences.asked) ExpectNothingLeft("difference from a full run", m_differences);
}

void ScenarioRun::Fail(const std::string& what) const { ADD_FAILURE_AT(m_file.c_str(), m_line) << what; }

void ScenarioRun::ExpectText(const std::string& expected, const std::string& actual) const {
  if (expected != actual) Fail("expected: " + expected + "\nis:       " + actual);
}

/// Compares with the first text left in the queue; "none" stands for an empty queue.
void ScenarioRun::ExpectNext(Queue& queue, const std::string& expected) {
  queue.asked = true;
  ExpectText(expected, queue.texts.empty() ? kNone : queue.texts.front());
  if (!queue.texts.empty()) queue.texts.pop_front();
}

void ScenarioRun::ExpectNothingLeft(const std::string& name, Queue& queue) {
  for (const std::string& text : queue.texts) Fail(fmt::format("unexpected {}: {}", name, text));
  queue = {};
}

// Actions

bool ScenarioRun::Act(const Statement& statement) {
  using Action = void (ScenarioRun::*)(const Words&);
  static const std::map<std::string, Action> kActions = {
      {"run", &ScenarioRun::RunFull}, {"change", &ScenarioRun::Change}, {"repeat", &ScenarioRun::Repeat},
      {"row", &ScenarioRun::AddRow},  {"set", &ScenarioRun::Set},
  };
  const std::string& word = statement.words.front();
  const auto found = kActions.find(word);
  const bool isEvent = tools::IsSwitchVerb(word);
  if (!isEvent && found == kActions.end()) return false;
  if (!m_tp) {
    m_network.Finish();
    m_tp.emplace(&m_network.Model().Db());
  }
  End();
  if (isEvent) {
    Switch(statement.words);
  } else {
    (this->*found->second)(statement.words);
  }
  return true;
}

/// Makes the call and notes what it writes.
void ScenarioRun::Call(const std::function<void()>& call) {
  MessageCatcher::Lines().clear();
  const QString printed = QString::fromStdString(Printed(call));
  for (const QString& line : MessageCatcher::Lines() + printed.split(QLatin1Char('\n'))) {
    const std::string text = WithoutSourceLine(line.trimmed().toStdString());
    if (!text.empty()) m_messages.texts.push_back(text);
  }
}

/// Makes a call that must return the N of "returns N" at the end of `words`, `usual` when nothing stands there.
int ScenarioRun::CallAndCompare(Words words, int usual, const std::function<int()>& call) {
  int expected = usual;
  if (words.size() >= 2 && words[words.size() - 2] == "returns") {
    expected = WholeNumber(words.back());
    words.resize(words.size() - 2);
  }
  if (!words.empty()) throw ScenarioError("'" + words.front() + "' is too much");
  int given = 0;
  Call([&] { given = call(); });
  if (given != expected) Fail(fmt::format("returns {} instead of {}", given, expected));
  return given;
}

void ScenarioRun::RunFull(const Words& words) {
  if (words.size() < 2 || words[1] != "full") throw ScenarioError("'run' needs the word 'full'");
  LookAtRun(CallAndCompare(Words(words.begin() + 2, words.end()), 1, [&] { return m_tp->tpAllnew(); }) == 1);
}

void ScenarioRun::Change(const Words& words) {
  LookAtRun(CallAndCompare(Words(words.begin() + 1, words.end()), 1, [&] { return m_tp->tpChange(); }) == 1);
}

/// Checks the lists of a run that succeeded, and notes what it has left to be asked for line by line.
void ScenarioRun::LookAtRun(bool succeeded) {
  if (succeeded) CheckLists();
  DTSDB& database = m_network.Model().Db();
  m_log = {};
  for (int i = 0; i < database.m_tplTable->GetCount(); ++i) {
    m_log.texts.push_back(LogRow((*database.m_tplTable)[i]));
  }
  m_differences = {};
}

void ScenarioRun::CheckLists() {
  std::vector<int> kvs(static_cast<std::size_t>(m_tp->getAllKVCount()));
  m_tp->getAllKVs(kvs.data(), static_cast<int>(kvs.size()));
  TpProbe probe(*m_tp);
  if (!probe.HasArrays()) return;
  const ListChecks checks(m_network.Model(), probe, kvs);
  for (const std::string& fault : checks.Faults()) Fail(fault);
}

void ScenarioRun::Switch(const Words& words) {
  std::size_t at = 0;
  const tools::SwitchEvent event = tools::TakeSwitchEvent(words, at);
  CallAndCompare(Words(words.begin() + static_cast<std::ptrdiff_t>(at), words.end()), 1, [&] {
    const auto id = IdFromText(QString::fromStdString(event.id));
    return m_tp->tpSetCompStatus(IdToBytes(id.value_or(QString())).constData(), event.type, event.on);
  });
}

void ScenarioRun::Repeat(const Words& words) {
  RequireWords(words, 2, words.size());
  const int count = WholeNumber(words[1]);
  for (int i = 0; i < count; ++i) Switch(Words(words.begin() + 2, words.end()));
}

/// row TYPE ID STATUS [number N]: a row in TPTRACE, no bit changed.
void ScenarioRun::AddRow(const Words& words) {
  RequireWords(words, 3, 5);
  DTSDB& database = m_network.Model().Db();
  TPTRACE row(database.m_tptraceTable->GetCount());
  row.type = static_cast<u8>(WholeNumber(words[1]));
  row.name = Id(words[2].c_str());
  row.status = static_cast<u8>(WholeNumber(words[3]));
  row.n1 = words.size() == 6 ? WholeNumber(words[5]) : tools::ComponentNumber(database, {row.type, false, words[2]});
  database.m_tptraceTable->Add(row);
}

/// set TABLE ID FIELD VALUE
void ScenarioRun::Set(const Words& words) {
  RequireWords(words, 4, 4);
  VisitRecord(m_network.Model().Db(), words[1], words[2], [&](auto& record) {
    VisitField(record, words[3], [&](auto& value) {
      if constexpr (std::is_same_v<std::remove_cvref_t<decltype(value)>, QString>) {
        value = Id(words[4].c_str());
      } else {
        const std::string fault = tools::ParseNumber(words[4], value);
        if (!fault.empty()) throw ScenarioError(fault);
      }
    });
  });
}

// Expectations

bool ScenarioRun::Expect(const Statement& statement) {
  const Words& words = statement.words;
  const std::string& word = words.front();
  const std::string& expected = statement.text;
  const auto needs = [&](std::size_t count) { RequireWords(words, count, count); };
  DTSDB& database = m_network.Model().Db();

  if (word == "reports") {
    ExpectNext(m_messages, expected);
  } else if (word == "log") {
    ExpectNext(m_log, expected);
  } else if (word == "sections") {
    ExpectText(expected, Sections());
  } else if (word == "ring") {
    ExpectText(expected, Ring());
  } else if (word == "free") {
    ExpectText(expected, Free(words.size() - 1));
  } else if (word == "islands") {
    ExpectText(expected, Islands());
  } else if (word == "fragments") {
    ExpectText(expected, Fragments());
  } else if (word == "moved") {
    ExpectText(expected, Moved());
  } else if (word == "changed") {
    ExpectText(expected, Changed());
  } else if (word == "waiting") {
    ExpectText(expected, std::to_string(database.m_tptraceTable->GetCount()));
  } else if (word == "logged") {
    ExpectText(expected, m_tp->tpBsChanged() == 1 ? "yes" : "no");
  } else if (word == "at") {
    RequireWords(words, 3, 4);
    ExpectText(Join(words, 3), At(words[1], words[2]));
  } else if (word == "cut") {
    RequireWords(words, 3, 4);
    ExpectText(Join(words, 3), Cut(words[1], words[2]));
  } else if (word == "live" || word == "dead") {
    needs(2);
    ExpectText(word, Life(words[1], words[2]));
  } else if (word == "stands") {
    std::size_t at = 1;
    const tools::SwitchEvent event = tools::TakeSwitchEvent(words, at);
    tools::RequireComponent(database, event);
    if (!tools::Stands(database, event, tools::ComponentNumber(database, event))) Fail("doesn't stand so");
  } else if (word == "is") {
    needs(4);
    ExpectText(words[4], Field(words));
  } else if (word == "agrees" || word == "differs") {
    if (!m_differences.asked) {
      for (const auto& [table, id, here, there] : analysis::CompareWithFullRun(database, analysis::Rules::kAsIs)) {
        m_differences.texts.push_back(fmt::format("{} {}: {} / full run: {}", table, id, here, there));
      }
    }
    ExpectNext(m_differences, word == "agrees" ? kNone : expected);
  } else {
    return false;
  }
  return true;
}

std::string ScenarioRun::NodeName(int nd) { return IdText(m_network.Model().Table<ND>().GetPh(nd).id); }

std::string ScenarioRun::LevelName(int kv) { return IdText(m_network.Model().Table<KV>().GetPh(kv).id); }

/// "2: a b | none: c": the nodes by section.
std::string ScenarioRun::Sections() {
  tTable<ND>& nodes = m_network.Model().Table<ND>();
  std::map<int, std::string> sections;
  for (int i = 0; i < nodes.GetCount(); ++i) sections[nodes[i].ibs] += " " + IdText(nodes[i].id);
  std::vector<std::string> texts;
  for (const auto& [bs, names] : sections) {
    if (bs != 0) texts.push_back(std::to_string(bs) + ":" + names);
  }
  if (sections.contains(0)) texts.push_back(kNone + (":" + sections[0]));
  return Listed(texts);
}

std::string ScenarioRun::Ring() { return fmt::format("{}", fmt::join(TpProbe(*m_tp).Ring(), " ")); }

/// The first free sections.
std::string ScenarioRun::Free(std::size_t count) {
  std::vector<int> free = TpProbe(*m_tp).FreeSections();
  free.resize(std::min(count, free.size()));
  return fmt::format("{}", fmt::join(free, " "));
}

/// "0: 2 3 | dead: 4": the sections by island, in ring order.
std::string ScenarioRun::Islands() {
  TpProbe probe(*m_tp);
  std::map<int, std::string> islands;
  for (const int bs : probe.Ring()) islands[probe.Section(bs).island] += " " + std::to_string(bs);
  std::vector<std::string> texts;
  for (const auto& [island, sections] : islands) {
    if (island >= 0) texts.push_back(std::to_string(island) + ":" + sections);
  }
  if (islands.contains(ISLAND_DEAD)) texts.push_back("dead:" + islands[ISLAND_DEAD]);
  if (islands.contains(ISLAND_NOT_PLACED)) texts.push_back("unplaced:" + islands[ISLAND_NOT_PLACED]);
  return Listed(texts);
}

/// "4 in A220, open end | 5 in B220, group": the fragments in ring order.
std::string ScenarioRun::Fragments() {
  TpProbe probe(*m_tp);
  std::vector<std::string> texts;
  for (const int bs : probe.Ring()) {
    const BS& section = probe.Section(bs);
    if ((section.status & BS_ISOLATED) == 0) continue;
    const char* const sort = (section.status & BS_BROKEN) != 0 ? "open end" : "group";
    texts.push_back(fmt::format("{} in {}, {}", bs, LevelName(section.ikv), sort));
  }
  return Listed(texts);
}

/// "c 2 -> 4 | d 2 -> 4": the nodes that moved.
std::string ScenarioRun::Moved() {
  tTable<CHND>& rows = m_network.Model().Table<CHND>();
  std::vector<std::string> texts;
  texts.reserve(static_cast<std::size_t>(rows.GetCount()));
  for (int i = 0; i < rows.GetCount(); ++i) {
    texts.push_back(fmt::format("{} {} -> {}", NodeName(rows[i].ind), rows[i].ibs_old, rows[i].ibs_new));
  }
  return Listed(texts);
}

/// The voltage levels of the run.
std::string ScenarioRun::Changed() {
  std::vector<std::string> texts;
  for (const int kv : TpProbe(*m_tp).ChangedKvs()) texts.push_back(LevelName(kv));
  return Listed(texts, " ");
}

/// The sections of a piece of equipment.
std::string ScenarioRun::At(const std::string& table, const std::string& id) {
  std::string text = "nowhere";
  VisitRecord(m_network.Model().Db(), table, id, [&](const auto& record) {
    using Record = std::remove_cvref_t<decltype(record)>;
    if constexpr (HasOneSection<Record>) text = std::to_string(record.ibs);
    if constexpr (HasTwoSections<Record>) text += " " + std::to_string(record.izbs);
  });
  return text;
}

/// Which ends of a branch are isolated: "from", "to", "both" or "none". The branch and its end records must hold the
/// same.
std::string ScenarioRun::Cut(const std::string& table, const std::string& id) {
  std::string text = "no branch";
  VisitRecord(m_network.Model().Db(), table, id, [&](const auto& record) {
    using Record = std::remove_cvref_t<decltype(record)>;
    if constexpr (requires { BranchKind<Record>::kOpen1; }) {
      using Kind = BranchKind<Record>;
      auto& ends = m_network.Model().Table<typename Kind::End>();
      const bool from = ends.GetPh(record.*Kind::kFromEnd).flags & END_ISOLATED;
      const bool to = ends.GetPh(record.*Kind::kToEnd).flags & END_ISOLATED;
      text = from ? (to ? "both" : "from") : (to ? "to" : kNone);
      if (from != ((record.tp_status & TP_END1_ISOLATED) != 0)) text += ", unlike tp_status at the from end";
      if (to != ((record.tp_status & TP_END2_ISOLATED) != 0)) text += ", unlike tp_status at the to end";
    }
  });
  return text;
}

/// "live" or "dead" by the section of a node or the status of a piece of equipment.
std::string ScenarioRun::Life(const std::string& table, const std::string& id) {
  bool dead = false;
  VisitRecord(m_network.Model().Db(), table, id, [&](const auto& record) {
    using Record = std::remove_cvref_t<decltype(record)>;
    if constexpr (std::is_same_v<Record, ND>) {
      dead = TpProbe(*m_tp).Section(record.ibs).island < 0;
    } else if constexpr (HasTwoSections<Record>) {
      dead = (record.tp_status & TP_BOTH_DEAD) != 0;
    } else if constexpr (requires { record.tp_status; }) {
      dead = (record.tp_status & SHUNT_DEAD) != 0;
    } else {
      throw ScenarioError("records of table " + table + " are neither live nor dead");
    }
  });
  return dead ? "dead" : "live";
}

std::string ScenarioRun::Field(const Words& words) {
  std::string text;
  VisitRecord(m_network.Model().Db(), words[1], words[2], [&](auto& record) {
    VisitField(record, words[3], [&](const auto& value) { text = tools::FieldText(value); });
  });
  return text;
}

/// "LN L REMOVE status 4 old 2 new 3"
std::string ScenarioRun::LogRow(const TPL& row) {
  return fmt::format("{} {} {} status {} old {} new {}", KindName(row.kind), IdText(row.name), IdText(row.event),
                     row.n1, row.n3, row.n2);
}

}  // namespace dtsdb::test

#include "tests/load/store_follower.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "model/table_kinds.h"

namespace dtsdb::load {

StoreFollower::StoreFollower(const std::string& store) {
  if (!m_database.open(store.c_str())) throw std::runtime_error(store + " can't be opened");
}

namespace {

constexpr int kDeadSection = 0;

LogRow RowOf(const tpl& stored) {
  LogRow row;
  row.number = stored.id;
  if (stored.kind != KIND_LD) return row;
  row.load = stored.name;
  const std::string_view event = stored.event;
  const bool isMove = event == "BS" && (stored.n2 == kDeadSection) != (stored.n3 == kDeadSection);
  row.matter = isMove ? LogMatter::kMove : event == "BS" ? LogMatter::kOther : LogMatter::kState;
  row.isOn = isMove ? stored.n2 != kDeadSection : event == "UNREMOVE";
  return row;
}

}  // namespace

void StoreFollower::Read() {
  ReadTrace();
  ReadLog();
  m_database.commit();
}

void StoreFollower::ReadTrace() {
  dbCursor<tptrace> cursor(&m_database);
  if (cursor.select() <= 0) return;
  std::vector<TracedEvent> fresh;
  oid_t newest = m_lastTraced;
  for (const tptrace* row = cursor.last(); row != nullptr; row = cursor.prev()) {
    const oid_t number = cursor.currentId().getOid();
    if (number <= m_lastTraced) break;
    newest = std::max(newest, number);
    fresh.push_back({row->id, row->time});
  }
  m_lastTraced = newest;
  m_events.insert(m_events.end(), fresh.rbegin(), fresh.rend());
}

void StoreFollower::ReadLog() {
  dbCursor<tpl> cursor(&m_database);
  if (cursor.select() <= 0) return;
  std::vector<LogRow> fresh;
  for (const tpl* row = cursor.last(); row != nullptr && row->id >= m_nextLog; row = cursor.prev()) {
    fresh.push_back(RowOf(*row));
  }
  if (!fresh.empty()) m_nextLog = fresh.front().number + 1;
  m_log.insert(m_log.end(), fresh.rbegin(), fresh.rend());
}

std::uint32_t StoreFollower::TakenAgainFrom() {
  constexpr std::uint32_t kMinute = 60;
  std::uint32_t last = kMinute;
  dbCursor<global> cursor(&m_database);
  if (cursor.select() > 0) last = std::max(cursor->u1, cursor->time);
  m_database.commit();
  return last - kMinute;
}

}  // namespace dtsdb::load

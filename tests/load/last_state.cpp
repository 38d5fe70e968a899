#include "tests/load/last_state.h"

#include <fmt/format.h>

#include <map>
#include <stdexcept>

#include "analysis/careful_runner.h"
#include "model/dtsdb.h"
#include "model/record_bits.h"
#include "model/text.h"

namespace dtsdb::load {
namespace {

/// The components that were switched, and whether their last event has closed them or switched them on.
std::map<std::string, bool> LastEvents(const Plan& plan, const std::vector<int>& events) {
  std::map<std::string, bool> last;
  for (int writer = 0; writer < plan.Writers(); ++writer) {
    for (int number = 0; number < events[static_cast<std::size_t>(writer)]; ++number) {
      const int row = plan.RowOf(writer, number);
      last[plan.Component(plan.ComponentOf(row)).name] = plan.IsOn(row);
    }
  }
  return last;
}

template <class Record>
int CountWrong(const tTable<Record>& table, const std::map<std::string, bool>& last, u32 Record::*word, u32 bit) {
  int wrong = 0;
  for (int i = 0; i < table.GetCount(); ++i) {
    const Record& record = table[i];
    const auto found = last.find(IdToBytes(record.id).toStdString());
    const bool isOn = (record.*word & bit) == 0;
    if (found != last.end() && found->second != isOn) ++wrong;
  }
  return wrong;
}

}  // namespace

LastState JudgeLastState(const std::string& store, const Plan& plan, const std::vector<int>& events) {
  dbDatabase database(dbDatabase::dbReadOnly);
  if (!database.open(store.c_str())) throw std::runtime_error(store + " can't be opened");
  DTSDB model;
  model.ReadFastdb(&database);
  database.close();
  const std::map<std::string, bool> last = LastEvents(plan, events);
  LastState state;
  state.wrongStates = CountWrong(*model.m_cbTable, last, &CB::flags, CB_OPEN) +
                      CountWrong(*model.m_ldTable, last, &LD::status, SHUNT_OFF);
  constexpr std::size_t kMost = 10;
  for (const analysis::Difference& difference : analysis::CompareWithFullRun(model)) {
    if (state.differences.size() == kMost) break;
    state.differences.push_back(fmt::format("{} {}: {}; full run: {}", difference.table, difference.identity,
                                            difference.here, difference.there));
  }
  return state;
}

}  // namespace dtsdb::load

#include "breakerflow/internal/section_voltages.h"

namespace dtsdb::internal {
namespace {

constexpr double kPi = 3.1415926;  // these digits, and no more: others compute with the same

}  // namespace

void SectionVoltages::AddSection(const bs& row) {
  const auto [section, isNew] = m_sections.try_emplace(row.id, Section{{row.v, row.a}});
  if (!isNew) section->second.isDoubled = true;
}

void SectionVoltages::Take(const cb& breaker) {
  const auto found = m_sections.find(breaker.ibs);
  if (found == m_sections.end() || found->second.isDoubled) return;
  const Voltage voltage = Completed(found->second.voltage, breaker);
  m_v = static_cast<float>(voltage.v);
  m_a = static_cast<float>(kPi * voltage.a / 180.0);
}

Voltage SectionVoltages::Completed(Voltage voltage, const cb& breaker) const {
  if (!m_completes || voltage.v != 0) return voltage;
  const auto bus = m_ofBus.find(breaker.ibs);
  if (bus != m_ofBus.end()) return bus->second;
  const auto level = m_ofLevel.find(breaker.kv);
  if (level != m_ofLevel.end()) voltage.v = level->second;
  return voltage;
}

}  // namespace dtsdb::internal

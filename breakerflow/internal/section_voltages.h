/// \file
/// The voltages of bus sections, as the breaker flow takes them.
#pragma once

#include <string>
#include <unordered_map>

#include "breakerflow/internal/source.h"

namespace dtsdb::internal {

/// Voltage in kV and angle in degrees.
struct Voltage {
  double v = 0;
  double a = 0;
};

/// Whether a section without a voltage gets another one.
enum class MissingVoltage {
  kStays,      ///< it stays 0
  kCompleted,  ///< that of the first bus on the section that has one, else the base voltage of the breaker's level
};

/// The voltages of all sections, and which one is in effect.
class SectionVoltages {
 public:
  template <class Source>
  SectionVoltages(const Source& source, MissingVoltage missing) : m_completes(missing == MissingVoltage::kCompleted) {
    source.template ForEachRow<BS>([this](const bs& row) { AddSection(row); });
    if (!m_completes) return;
    source.template ForEachRow<BUS>([this](const bus& row) {
      if (row.v > 0) m_ofBus.try_emplace(row.ibs, Voltage{row.v, row.a});
    });
    source.template ForEachRow<KV>([this](const kv& row) { m_ofLevel.try_emplace(row.id, row.vbase); });
  }

  /// Makes the voltage of the section of `breaker` the one in effect. Where there is no such section, or several of its
  /// number, the one before stays. Kept: K58.
  void Take(const cb& breaker);

  float V() const { return m_v; }
  /// In radians.
  float A() const { return m_a; }

 private:
  struct Section {
    Voltage voltage;
    bool isDoubled = false;
  };

  void AddSection(const bs& row);
  Voltage Completed(Voltage voltage, const cb& breaker) const;

  bool m_completes;
  std::unordered_map<int, Section> m_sections;
  std::unordered_map<int, Voltage> m_ofBus;           ///< by section
  std::unordered_map<std::string, double> m_ofLevel;  ///< by the level's identity
  float m_v = 0;
  float m_a = 0;
};

}  // namespace dtsdb::internal

/// \file
/// The state of equipment after a topology run, in words.
#pragma once

#include <string>

#include "model/record_bits.h"

namespace dtsdb::analysis::internal {

inline constexpr const char* kLive = "live";

inline void AddWord(std::string& words, bool holds, const char* word) {
  if (!holds) return;
  if (!words.empty()) words += ", ";
  words += word;
}

inline std::string StateOf(const BUS& bus) { return (bus.tp_status & SHUNT_DEAD) != 0 ? "dead" : kLive; }

/// What stands on one node and can be switched: UN, LD, CP.
template <class Shunt>
std::string ShuntState(const Shunt& shunt) {
  if ((shunt.status & SHUNT_OFF) != 0) return "switched off";
  std::string words;
  AddWord(words, (shunt.status & SHUNT_ISOLATED) != 0, "isolated");
  AddWord(words, (shunt.tp_status & SHUNT_DEAD) != 0, "dead");
  return words.empty() ? kLive : words;
}

inline std::string StateOf(const UN& unit) { return ShuntState(unit); }
inline std::string StateOf(const LD& load) { return ShuntState(load); }
inline std::string StateOf(const CP& shunt) { return ShuntState(shunt); }

/// A branch that the topology walks: LN, XF, DLN, ZBR.
template <class Branch>
std::string StateOf(const Branch& branch) {
  using Kind = BranchKind<Branch>;
  if ((branch.status & Kind::kOut) != 0) return "out of service";
  const bool open1 = (branch.status & Kind::kOpen1) != 0;
  const bool open2 = (branch.status & Kind::kOpen2) != 0;
  std::string words;
  AddWord(words, open1, "from end open");
  AddWord(words, !open1 && (branch.tp_status & TP_END1_ISOLATED) != 0, "from end isolated");
  AddWord(words, open2, "to end open");
  AddWord(words, !open2 && (branch.tp_status & TP_END2_ISOLATED) != 0, "to end isolated");
  AddWord(words, (branch.tp_status & TP_BOTH_DEAD) != 0, "dead");
  return words.empty() ? kLive : words;
}

/// A breaker is as live as the sections at its sides, whether open or closed.
inline std::string StateOf(const CB& breaker) {
  std::string words;
  AddWord(words, (breaker.tp_status & TP_END1_ISOLATED) != 0, "from side isolated");
  AddWord(words, (breaker.tp_status & TP_END2_ISOLATED) != 0, "to side isolated");
  AddWord(words, (breaker.tp_status & TP_BOTH_DEAD) != 0, "dead");
  return words.empty() ? kLive : words;
}

}  // namespace dtsdb::analysis::internal

/// \file
/// All public members of the core and the analysis layer as calls that bytes choose and fill in.
#pragma once

#include <array>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/switching.h"
#include "breakerflow/cbflow.h"
#include "fuzz/byte_source.h"
#include "fuzz/small_store.h"
#include "rtdb/volma_rtdb.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace dtsdb::fuzz {

/// What the calls work on: two of each class, so that they can be copied and assigned to each other, and a realtime
/// database in memory. Nothing is validated at first.
struct Workplace {
  static constexpr int kCopies = 2;

  /// `source` outlives it.
  explicit Workplace(ByteSource& source);
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;
  ~Workplace();

  DTSDB& AnyModel() { return models[static_cast<std::size_t>(bytes.Below(kCopies))]; }
  TP& AnyTp() { return tps[static_cast<std::size_t>(bytes.Below(kCopies))]; }
  NMD& AnyNmd() { return nmds[static_cast<std::size_t>(bytes.Below(kCopies))]; }
  cbFlow& AnyFlow() { return flows[static_cast<std::size_t>(bytes.Below(kCopies))]; }
  /// Any number that a caller may have in mind: rows, and what lies beside all of them.
  int AnyNumber();
  /// The identity of some record of the table, or any other.
  template <class Record>
  QString IdOf(DTSDB& model) {
    tTable<Record>& table = TableOf<Record>(model);
    if (table.GetCount() == 0 || bytes.Chance(20)) return OtherId();
    return table[bytes.Below(table.GetCount())].id;
  }
  /// An event, mostly of a component that is there.
  SwitchEvent AnyEvent();

  ByteSource& bytes;
  StoreFolder folder;
  dbDatabase database;
  std::array<DTSDB, kCopies> models;
  std::deque<TP> tps;
  std::deque<NMD> nmds;
  std::deque<cbFlow> flows;
  std::optional<analysis::Switching> switching;

 private:
  QString OtherId();
};

/// A public member and a way to call it.
struct PublicCall {
  const char* member;  ///< as in "TP::tpAllnew"
  void (*make)(Workplace&);
};

/// All that are called. Where a class is a template, its members stand once and are called on any table.
std::vector<PublicCall> AllPublicCalls();

// The parts of it.
std::span<const PublicCall> CoreCalls();
std::span<const PublicCall> TableCalls();
std::span<const PublicCall> ExchangeCalls();
std::span<const PublicCall> AnalysisCalls();

/// A member that isn't called, and why.
struct LeftOut {
  const char* member;
  const char* why;
};
/// What the interface makes its caller's duty, and what only other members may call.
std::span<const LeftOut> CallsLeftOut();

}  // namespace dtsdb::fuzz

/// \file
/// The records that an import makes, on their way into a model.
#pragma once

#include <vector>

#include "model/dtsdb.h"

namespace dtsdb::tools {

/// The records of the tables that a validation starts from, in any order.
struct Rows {
  std::vector<CO> co;
  std::vector<DV> dv;
  std::vector<ST> st;
  std::vector<KV> kv;
  std::vector<CB> cb;
  std::vector<ZBR> zbr;
  std::vector<BUS> bus;
  std::vector<UN> un;
  std::vector<LD> ld;
  std::vector<CP> cp;
  std::vector<LN> ln;
  std::vector<XF> xf;
  std::vector<DLN> dln;
  std::vector<ANALOG> analog;
  std::vector<STATUS> status;

  /// Fills the tables of `model`, which are empty.
  void Fill(DTSDB& model);
};

/// A line joins levels of one base voltage. Where it leads from `from` to a level `to` of another, `vbase` of one of
/// them becomes 0, which isn't compared: that of `from` when it `isMade`, no voltage level of a station, else that of
/// `to`. Returns the level that was changed, null for none.
KV* PartVoltages(KV& from, KV& to, bool isMade);

}  // namespace dtsdb::tools

#include "validation/internal/addition_tests.h"

#include <bit>

#include "model/record_bits.h"

namespace dtsdb::internal {

/// True when node `nd` exists in another level than `kv`.
bool AdditionTests::IsNodeElsewhere(const QString& nd, int kv) const {
  const int node = Number<ND>(nd);
  return node != -1 && LevelOfNode(m_model, node) != kv;
}

// The administrative tree

// An empty identity passes, here and below. Kept: K16.
bool AdditionTests::IsValid(const CO& co) const { return Number<CO>(co.id) == -1 || Refuse(EditReasons<CO>::exists); }

bool AdditionTests::IsValid(const DV& dv) const {
  if (Number<DV>(dv.id) != -1) return Refuse(EditReasons<DV>::exists);
  return Number<CO>(dv.co) != -1 || Refuse(EditReasons<DV>::parentMissing);
}

bool AdditionTests::IsValid(const ST& st) const {
  if (Number<ST>(st.id) != -1) return Refuse(EditReasons<ST>::exists);
  if (Number<DV>(st.dv) == -1) return Refuse(EditReasons<ST>::parentMissing);
  // By mask, and far narrower than the 0 to 8 of a run: bits 1 and 2 hit the mask 3 as well, so that only a type
  // with bit 8 and without these two passes. Kept: K17.
  int hits = 0;
  for (const int mask : {0, 1, 2, 3, 8}) hits += (st.type & mask) != 0 ? 1 : 0;
  return hits == 1 || Refuse(EditReasons<ST>::badType);
}

bool AdditionTests::IsValid(const KV& kv) const {
  if (Number<KV>(kv.id) != -1) return Refuse(EditReasons<KV>::exists);
  if (Number<ST>(kv.st) == -1) return Refuse(EditReasons<KV>::parentMissing);
  // Stricter than a run, which takes 0, and blind to the limits, which a run looks at. Kept: K18.
  return !(kv.vbase <= 0.0F) || Refuse(EditReasons<KV>::badVbase);
}

// Devices on one node

template <class Shunt>
bool AdditionTests::IsValidShunt(const Shunt& shunt) const {
  if (shunt.nd.isEmpty()) return Refuse(EditReasons<Shunt>::noNode);
  if (Number<Shunt>(shunt.id) != -1) return Refuse(EditReasons<Shunt>::exists);
  const int kv = Number<KV>(shunt.kv);
  if (kv == -1) return Refuse(EditReasons<Shunt>::parentMissing);
  return !IsNodeElsewhere(shunt.nd, kv) || Refuse(EditReasons<Shunt>::inOtherLevel);
}

bool AdditionTests::IsValid(const BUS& bus) const { return IsValidShunt(bus); }
bool AdditionTests::IsValid(const LD& ld) const { return IsValidShunt(ld); }
bool AdditionTests::IsValid(const UN& un) const { return IsValidShunt(un); }
bool AdditionTests::IsValid(const CP& cp) const { return IsValidShunt(cp); }

// The branches inside a station

bool AdditionTests::IsValid(const CB& cb) const {
  if (Number<CB>(cb.id) != -1) return Refuse(EditReasons<CB>::exists);
  if (cb.nd.isEmpty()) return Refuse(EditReasons<CB>::noFromNode);
  if (cb.znd.isEmpty()) return Refuse(EditReasons<CB>::noToNode);
  if (cb.nd == cb.znd) return Refuse(EditReasons<CB>::sameNodes);
  const int kv = Number<KV>(cb.kv);
  if (kv == -1) return Refuse(EditReasons<CB>::parentMissing);
  if (IsNodeElsewhere(cb.nd, kv) || IsNodeElsewhere(cb.znd, kv)) return Refuse(EditReasons<CB>::inOtherLevel);
  return std::popcount(cb.flags & CB_TYPES) == 1 || Refuse(EditReasons<CB>::badType);
}

bool AdditionTests::IsValid(const ZBR& zbr) const {
  if (Number<ZBR>(zbr.id) != -1) return Refuse(EditReasons<ZBR>::exists);
  const int cb = Number<CB>(zbr.cb);
  if (cb == -1) return Refuse(EditReasons<ZBR>::breakerMissing);
  return m_model.m_cbTable->GetPh(cb).r_kv_cb != -1 || Refuse(EditReasons<ZBR>::breakerUnrelated);
}

bool AdditionTests::IsValid(const XF& xf) const {
  if (Number<XF>(xf.id) != -1) return Refuse(EditReasons<XF>::exists);
  if (xf.nd.isEmpty()) return Refuse(EditReasons<XF>::noFromNode);
  if (xf.znd.isEmpty()) return Refuse(EditReasons<XF>::noToNode);
  if (xf.nd == xf.znd) return Refuse(EditReasons<XF>::sameNodes);
  const int st = Number<ST>(xf.st);
  if (st == -1) return Refuse(EditReasons<XF>::parentMissing);
  const int kv = Number<KV>(xf.kv);
  if (kv == -1) return Refuse(EditReasons<XF>::fromLevelMissing);
  if (StationOfLevel(m_model, kv) != st) return Refuse(EditReasons<XF>::inOtherStation);
  const int zkv = Number<KV>(xf.zkv);
  if (zkv == -1) return Refuse(EditReasons<XF>::toLevelMissing);
  if (StationOfLevel(m_model, zkv) != st) return Refuse(EditReasons<XF>::inOtherStation);
  if (xf.type < 1 || xf.type > 3) return Refuse(EditReasons<XF>::badType);
  if (IsNodeElsewhere(xf.nd, kv)) return Refuse(EditReasons<XF>::fromInOtherLevel);
  return !IsNodeElsewhere(xf.znd, zkv) || Refuse(EditReasons<XF>::toInOtherLevel);
}

// Lines

namespace {

/// The reasons about the level at one end of a line.
struct LevelReasons {
  const Reason& missing;
  const Reason& inOtherLevel;
  const Reason& inOtherStation;
};

}  // namespace

/// A line joins nodes that exist already, in two stations, each of which has a district. A run takes one inside a
/// station and compares the base voltages. Kept: K60.
template <class Line>
bool AdditionTests::IsValidLine(const Line& line) const {
  using Reasons = EditReasons<Line>;
  if (Number<Line>(line.id) != -1) return Refuse(Reasons::exists);
  const int nd = Number<ND>(line.nd);
  if (nd == -1) return Refuse(Reasons::noFromNode);
  const int znd = Number<ND>(line.znd);
  if (znd == -1) return Refuse(Reasons::noToNode);
  if (nd == znd) return Refuse(Reasons::sameNodes);

  const int dv = Number<DV>(line.dv);
  if (dv == -1) return Refuse(Reasons::parentMissing);
  const int st = Number<ST>(line.st);
  if (st == -1) return Refuse(Reasons::fromStationMissing);
  const int fromDistrict = DistrictOfStation(m_model, st);
  if (fromDistrict == -1) return Refuse(Reasons::fromStationUnrelated);
  const int zst = Number<ST>(line.zst);
  if (zst == -1) return Refuse(Reasons::toStationMissing);
  if (st == zst) return Refuse(Reasons::sameStations);
  const int toDistrict = DistrictOfStation(m_model, zst);
  if (toDistrict == -1) return Refuse(Reasons::toStationUnrelated);
  if (dv != fromDistrict && dv != toDistrict) return Refuse(Reasons::inOtherDistrict);

  const auto isEndValid = [this](int node, const QString& kvId, int station, const LevelReasons& reasons) {
    const int kv = Number<KV>(kvId);
    if (kv == -1) return Refuse(reasons.missing);
    if (LevelOfNode(m_model, node) != kv) return Refuse(reasons.inOtherLevel);
    // The row with the level's own number, not the row that the level names. Kept: K19.
    return m_model.m_rStKvTable->GetPh(kv).ist == station || Refuse(reasons.inOtherStation);
  };
  return isEndValid(nd, line.kv, st,
                    {Reasons::fromLevelMissing, Reasons::fromInOtherLevel, Reasons::fromInOtherStation}) &&
         isEndValid(znd, line.zkv, zst, {Reasons::toLevelMissing, Reasons::toInOtherLevel, Reasons::toInOtherStation});
}

bool AdditionTests::IsValid(const LN& ln) const { return IsValidLine(ln); }
bool AdditionTests::IsValid(const DLN& dln) const { return IsValidLine(dln); }

}  // namespace dtsdb::internal

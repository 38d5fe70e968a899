/// \file
/// Whether a record can be added to a model. The tests run in a fixed order, and the first that fails gives the
/// reason. They are deliberately not those of a validation run: see docs/editing.md.
#include <bit>

#include "validation/device_kinds.h"
#include "validation/edit_messages.h"
#include "validation/nmd.h"

namespace dtsdb {

/// Sets the last error, unless `text` is null. Always gives false.
bool NMD::Refuse(const char* text) {
  if (text != nullptr) m_lastError = QString::fromUtf8(text);
  return false;
}

/// True when node `nd` exists in another level than `kv`.
bool NMD::IsNodeElsewhere(const QString& nd, int kv) {
  const int node = Number<ND>(nd);
  return node != -1 && LevelOfNode(node) != kv;
}

// The administrative tree

bool NMD::IsValid(const CO& co) {
  if (!HasModel()) return false;
  return Number<CO>(co.id) == -1 || Refuse(Say<CO>::exists);
}

bool NMD::IsValid(const DV& dv) {
  if (!HasModel()) return false;
  if (Number<DV>(dv.id) != -1) return Refuse(Say<DV>::exists);
  return Number<CO>(dv.co) != -1 || Refuse(Say<DV>::parentMissing);
}

bool NMD::IsValid(const ST& st) {
  if (!HasModel()) return false;
  if (Number<ST>(st.id) != -1) return Refuse(Say<ST>::exists);
  if (Number<DV>(st.dv) == -1) return Refuse(Say<ST>::parentMissing);
  // Deliberately by mask, and far narrower than the 0 to 8 of a run: bits 1 and 2 hit the mask 3 as well, so that only
  // a type with bit 8 and without these two passes.
  int hits = 0;
  for (const int mask : {0, 1, 2, 3, 8}) hits += (st.type & mask) != 0 ? 1 : 0;
  return hits == 1 || Refuse(Say<ST>::badType);
}

bool NMD::IsValid(const KV& kv) {
  if (!HasModel()) return false;
  if (Number<KV>(kv.id) != -1) return Refuse(Say<KV>::exists);
  if (Number<ST>(kv.st) == -1) return Refuse(Say<KV>::parentMissing);
  // Deliberately stricter than a run, which takes 0, and blind to the limits, which a run looks at.
  return !(kv.vbase <= 0.0F) || Refuse(Say<KV>::badVbase);
}

// Devices on one node

template <class Shunt>
bool NMD::IsValidShunt(const Shunt& shunt) {
  if (!HasModel()) return false;
  if (shunt.nd.isEmpty()) return Refuse(Say<Shunt>::noNode);
  if (Number<Shunt>(shunt.id) != -1) return Refuse(Say<Shunt>::exists);
  const int kv = Number<KV>(shunt.kv);
  if (kv == -1) return Refuse(Say<Shunt>::parentMissing);
  return !IsNodeElsewhere(shunt.nd, kv) || Refuse(Say<Shunt>::inOtherLevel);
}

bool NMD::IsValid(const BUS& bus) { return IsValidShunt(bus); }
bool NMD::IsValid(const LD& ld) { return IsValidShunt(ld); }
bool NMD::IsValid(const UN& un) { return IsValidShunt(un); }
bool NMD::IsValid(const CP& cp) { return IsValidShunt(cp); }

// The branches inside a station

bool NMD::IsValid(const CB& cb) {
  if (!HasModel()) return false;
  if (Number<CB>(cb.id) != -1) return Refuse(Say<CB>::exists);
  if (cb.nd.isEmpty()) return Refuse(Say<CB>::noFromNode);
  if (cb.znd.isEmpty()) return Refuse(Say<CB>::noToNode);
  if (cb.nd == cb.znd) return Refuse(Say<CB>::sameNodes);
  const int kv = Number<KV>(cb.kv);
  if (kv == -1) return Refuse(Say<CB>::parentMissing);
  if (IsNodeElsewhere(cb.nd, kv) || IsNodeElsewhere(cb.znd, kv)) return Refuse(Say<CB>::inOtherLevel);
  return std::popcount(cb.flags & CB_TYPES) == 1 || Refuse(Say<CB>::badType);
}

bool NMD::IsValid(const ZBR& zbr) {
  if (!HasModel()) return false;
  if (Number<ZBR>(zbr.id) != -1) return Refuse(Say<ZBR>::exists);
  const int cb = Number<CB>(zbr.cb);
  if (cb == -1) return Refuse(Say<ZBR>::breakerMissing);
  return m_cbTable->GetPh(cb).r_kv_cb != -1 || Refuse(Say<ZBR>::breakerUnrelated);
}

bool NMD::IsValid(const XF& xf) {
  if (!HasModel()) return false;
  if (Number<XF>(xf.id) != -1) return Refuse(Say<XF>::exists);
  if (xf.nd.isEmpty()) return Refuse(Say<XF>::noFromNode);
  if (xf.znd.isEmpty()) return Refuse(Say<XF>::noToNode);
  if (xf.nd == xf.znd) return Refuse(Say<XF>::sameNodes);
  const int st = Number<ST>(xf.st);
  if (st == -1) return Refuse(Say<XF>::parentMissing);
  const int kv = Number<KV>(xf.kv);
  if (kv == -1) return Refuse(Say<XF>::fromLevelMissing);
  if (StationOfLevel(kv) != st) return Refuse(Say<XF>::inOtherStation);
  const int zkv = Number<KV>(xf.zkv);
  if (zkv == -1) return Refuse(Say<XF>::toLevelMissing);
  if (StationOfLevel(zkv) != st) return Refuse(Say<XF>::inOtherStation);
  if (xf.type < 1 || xf.type > 3) return Refuse(Say<XF>::badType);
  if (IsNodeElsewhere(xf.nd, kv)) return Refuse(Say<XF>::fromInOtherLevel);
  return !IsNodeElsewhere(xf.znd, zkv) || Refuse(Say<XF>::toInOtherLevel);
}

// Lines

namespace {

/// The texts on the level at one end of a line.
struct LevelTexts {
  const char* missing;
  const char* inOtherLevel;
  const char* inOtherStation;
};

}  // namespace

/// A line joins nodes that exist already, in two stations, each of which has a district.
template <class Line>
bool NMD::IsValidLine(const Line& line) {
  using Texts = Say<Line>;
  if (!HasModel()) return false;
  if (Number<Line>(line.id) != -1) return Refuse(Texts::exists);
  const int nd = Number<ND>(line.nd);
  if (nd == -1) return Refuse(Texts::noFromNode);
  const int znd = Number<ND>(line.znd);
  if (znd == -1) return Refuse(Texts::noToNode);
  if (nd == znd) return Refuse(Texts::sameNodes);

  const int dv = Number<DV>(line.dv);
  if (dv == -1) return Refuse(Texts::parentMissing);
  const int st = Number<ST>(line.st);
  if (st == -1) return Refuse(Texts::fromStationMissing);
  const int fromDistrict = DistrictOfStation(st);
  if (fromDistrict == -1) return Refuse(Texts::fromStationUnrelated);
  const int zst = Number<ST>(line.zst);
  if (zst == -1) return Refuse(Texts::toStationMissing);
  if (st == zst) return Refuse(Texts::sameStations);
  const int toDistrict = DistrictOfStation(zst);
  if (toDistrict == -1) return Refuse(Texts::toStationUnrelated);
  if (dv != fromDistrict && dv != toDistrict) return Refuse(Texts::inOtherDistrict);

  const auto isEndValid = [this](int node, const QString& kvId, int station, const LevelTexts& texts) {
    const int kv = Number<KV>(kvId);
    if (kv == -1) return Refuse(texts.missing);
    if (LevelOfNode(node) != kv) return Refuse(texts.inOtherLevel);
    // Deliberately the row with the level's own number, not the row that the level names.
    return m_rStKvTable->GetPh(kv).ist == station || Refuse(texts.inOtherStation);
  };
  return isEndValid(nd, line.kv, st, {Texts::fromLevelMissing, Texts::fromInOtherLevel, Texts::fromInOtherStation}) &&
         isEndValid(znd, line.zkv, zst, {Texts::toLevelMissing, Texts::toInOtherLevel, Texts::toInOtherStation});
}

bool NMD::IsValid(const LN& ln) { return IsValidLine(ln); }
bool NMD::IsValid(const DLN& dln) { return IsValidLine(dln); }

}  // namespace dtsdb

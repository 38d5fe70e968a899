/// \file
/// The administrative tree: companies, districts, stations, voltage levels.
#include "validation/row_checks.h"

namespace dtsdb {
namespace {

constexpr u8 kHighestStationType = 8;

}  // namespace

bool NMD::DetectCO_DV() {
  for (int i = 0; i < m_coTable->GetCount(); ++i) IsNamed((*m_coTable)[i]);
  return LinkPass<R_CO_DV>() && CheckRows(&NMD::CheckDistrict);
}

bool NMD::CheckDistrict(DV& dv, int /*number*/) {
  if (IsNamed(dv)) IsLinked<R_CO_DV>(dv);
  return true;
}

bool NMD::DetectDV_ST() { return LinkPass<R_DV_ST>() && CheckRows(&NMD::CheckStation); }

bool NMD::CheckStation(ST& st, int /*number*/) {
  if (!IsNamed(st)) return true;
  IsLinked<R_DV_ST>(st);
  if (st.type > kHighestStationType) Report(st, message::kBadStationType);
  return true;
}

bool NMD::DetectST_KV() { return LinkPass<R_ST_KV>() && CheckRows(&NMD::CheckLevel); }

bool NMD::CheckLevel(KV& kv, int /*number*/) {
  if (!IsNamed(kv)) return true;
  IsLinked<R_ST_KV>(kv);
  if (kv.vbase < 0.0F) Report(kv, message::kBadVbase);
  if (kv.vmax < 0.0F) Report(kv, message::kBadVmax);
  if (kv.vmin < 0.0F) Report(kv, message::kBadVmin);
  if (kv.vmax < kv.vmin) Report(kv, message::kVmaxBelowVmin);
  return true;
}

}  // namespace dtsdb

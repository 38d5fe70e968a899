/// \file
/// Records by name, and the ways up from a node to its district. All numbers are physical, -1 is none.
#pragma once

#include "model/dtsdb.h"

namespace dtsdb::internal {

/// The number of the record with identity `id`.
template <class Record>
int NumberOf(DTSDB& model, const QString& id) {
  return TableOf<Record>(model).Find(Record(id));
}

/// The voltage level of a node.
inline int LevelOfNode(DTSDB& model, int nd) {
  return model.m_rKvNdTable->GetPh(model.m_ndTable->GetPh(nd).r_kv_nd).ikv;
}

/// The station of a voltage level.
inline int StationOfLevel(DTSDB& model, int kv) {
  const int row = model.m_kvTable->GetPh(kv).r_st_kv;
  return row == -1 ? -1 : model.m_rStKvTable->GetPh(row).ist;
}

/// The district of a station.
inline int DistrictOfStation(DTSDB& model, int st) {
  const int row = model.m_stTable->GetPh(st).r_dv_st;
  return row == -1 ? -1 : model.m_rDvStTable->GetPh(row).idv;
}

/// Notes in a station what stands in it; a level without a station has none to note it in.
inline void MarkStation(DTSDB& model, int st, u8 bit) {
  if (st != -1) model.m_stTable->GetPh(st).flag |= bit;
}

}  // namespace dtsdb::internal

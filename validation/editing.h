/// \file
/// For callers that edit a model: the thirteen record classes as a list, and how a new record is prepared.
#pragma once

#include "validation/nmd.h"

namespace dtsdb {

/// The record classes that NMD adds and removes, parents in front of what names them.
using EditedRecords = TypeList<CO, DV, ST, KV, BUS, LD, UN, CP, CB, XF, ZBR, LN, DLN>;

/// \name NMD's additions and removals by record class
///@{
inline bool AddRecord(NMD& nmd, CO& record) { return nmd.AddCO(record); }
inline bool AddRecord(NMD& nmd, DV& record) { return nmd.AddDV(record); }
inline bool AddRecord(NMD& nmd, ST& record) { return nmd.AddST(record); }
inline bool AddRecord(NMD& nmd, KV& record) { return nmd.AddKV(record); }
inline bool AddRecord(NMD& nmd, BUS& record) { return nmd.AddBUS(record); }
inline bool AddRecord(NMD& nmd, LD& record) { return nmd.AddLD(record); }
inline bool AddRecord(NMD& nmd, UN& record) { return nmd.AddUN(record); }
inline bool AddRecord(NMD& nmd, CP& record) { return nmd.AddCP(record); }
inline bool AddRecord(NMD& nmd, CB& record) { return nmd.AddCB(record); }
inline bool AddRecord(NMD& nmd, XF& record) { return nmd.AddXF(record); }
inline bool AddRecord(NMD& nmd, ZBR& record) { return nmd.AddZBR(record); }
inline bool AddRecord(NMD& nmd, LN& record) { return nmd.AddLN(record); }
inline bool AddRecord(NMD& nmd, DLN& record) { return nmd.AddDLN(record); }
inline bool RemoveRecord(NMD& nmd, const CO& record) { return nmd.RemoveCO(record.id); }
inline bool RemoveRecord(NMD& nmd, const DV& record) { return nmd.RemoveDV(record.id); }
inline bool RemoveRecord(NMD& nmd, const ST& record) { return nmd.RemoveST(record.id); }
inline bool RemoveRecord(NMD& nmd, const KV& record) { return nmd.RemoveKV(record.id); }
inline bool RemoveRecord(NMD& nmd, const BUS& record) { return nmd.RemoveBUS(record.id); }
inline bool RemoveRecord(NMD& nmd, const LD& record) { return nmd.RemoveLD(record.id); }
inline bool RemoveRecord(NMD& nmd, const UN& record) { return nmd.RemoveUN(record.id); }
inline bool RemoveRecord(NMD& nmd, const CP& record) { return nmd.RemoveCP(record.id); }
inline bool RemoveRecord(NMD& nmd, const CB& record) { return nmd.RemoveCB(record.id); }
inline bool RemoveRecord(NMD& nmd, const XF& record) { return nmd.RemoveXF(record.id); }
inline bool RemoveRecord(NMD& nmd, const ZBR& record) { return nmd.RemoveZBR(record.id); }
inline bool RemoveRecord(NMD& nmd, const LN& record) { return nmd.RemoveLN(record.id); }
inline bool RemoveRecord(NMD& nmd, const DLN& record) { return nmd.RemoveDLN(record.id); }
///@}

/// Sets the numbers of other records to -1, none, as a careful caller does with a new record before it is added: an
/// addition resolves the numbers that it needs and leaves the others as they came.
template <class Record>
void ClearLinks(Record& record) {
  for (const FieldInfo& field : Record::Fields()) {
    if (field.IsLink()) field.In<i32>(&record) = -1;
  }
}

}  // namespace dtsdb

#include <QBuffer>
#include <memory>
#include <vector>

#include "fuzz/any_model.h"
#include "fuzz/public_calls.h"
#include "model/qarchive.h"
#include "model/table_image.h"

namespace dtsdb::fuzz {

namespace {

/// Calls `visit` with one of the 46 tables of some model.
template <class Visit>
void OnAnyTable(Workplace& w, Visit visit) {
  DTSDB& model = w.AnyModel();
  int at = w.bytes.Below(46);
  ForEachTable(model, [&](auto& table) {
    if (at-- == 0) visit(table);
  });
}

template <class T>
T AnyRow(Workplace& w, const tTable<T>& table) {
  T record;
  if (table.GetCount() > 0 && w.bytes.Chance(70)) record = table[w.bytes.Below(table.GetCount())];
  if constexpr (T::kKey == RecordKey::kIdentified) {
    if (w.bytes.Chance(50)) record.id = AnyIdentity(w.bytes);
  } else if constexpr (T::kKey != RecordKey::kRelation) {
    if (w.bytes.Chance(50)) record.id = w.AnyNumber();
  }
  return record;
}

void SetData(Workplace& w) {
  OnAnyTable(w, [&]<class T>(tTable<T>& table) {
    std::vector<T> rows;
    for (int left = 1 + w.bytes.Below(5); left > 0; --left) rows.push_back(AnyRow(w, table));
    table.SetData(rows.data(), static_cast<int>(rows.size()), w.bytes.Chance(30));
  });
}

/// As its caller must: for a table that SetData has filled from the same records.
void SetDataTail(Workplace& w) {
  OnAnyTable(w, [&]<class T>(tTable<T>& table) {
    std::vector<T> rows;
    for (int i = 0; i < table.GetCount(); ++i) rows.push_back(table[i]);
    if (rows.empty()) return;
    table.SetData(rows.data(), static_cast<int>(rows.size()), true);
    rows.push_back(AnyRow(w, table));
    table.SetDataTail(rows.data(), static_cast<int>(rows.size()));
  });
}

void ChildList(Workplace& w) {
  OnAnyTable(w, [&]<class T>(tTable<T>& table) {
    if constexpr (requires { table.ChildList(0); }) {
      const std::unique_ptr<tChildNode> list(table.ChildList(w.AnyNumber()));
    }
  });
}

void Serialize(Workplace& w) {
  QBuffer buffer;
  buffer.open(QIODevice::ReadWrite);
  QArchive store(&buffer, false);
  OnAnyTable(w, [&](auto& table) { table.Serialize(store); });
  buffer.seek(w.bytes.Chance(20) ? w.bytes.Below(64) : 0);
  QArchive load(&buffer, true);
  OnAnyTable(w, [&](auto& table) { table.Serialize(load); });
}

constexpr PublicCall kTableCalls[] = {
    {"tTable::GetCount", [](Workplace& w) { OnAnyTable(w, [](auto& table) { table.GetCount(); }); }},
    {"tTable::GetSize", [](Workplace& w) { OnAnyTable(w, [](auto& table) { table.GetSize(); }); }},
    {"tTable::IsUsed", [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table.IsUsed(w.AnyNumber()); }); }},
    {"tTable::ChangeCount", [](Workplace& w) { OnAnyTable(w, [](auto& table) { table.ChangeCount(); }); }},
    {"tTable::NoteChange", [](Workplace& w) { OnAnyTable(w, [](auto& table) { table.NoteChange(); }); }},
    {"tTable::Settle", [](Workplace& w) { OnAnyTable(w, [](auto& table) { table.Settle(); }); }},
    {"tTable::operator[]", [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table[w.AnyNumber()]; }); }},
    {"tTable::GetAt", [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table.GetAt(w.AnyNumber()); }); }},
    {"tTable::GetPh", [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table.GetPh(w.AnyNumber()); }); }},
    {"tTable::LgToPh", [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table.LgToPh(w.AnyNumber()); }); }},
    {"tTable::PhToLg", [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table.PhToLg(w.AnyNumber()); }); }},
    {"tTable::Find", [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table.Find(AnyRow(w, table)); }); }},
    {"tTable::Add", [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table.Add(AnyRow(w, table)); }); }},
    {"tTable::Remove", [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table.Remove(w.AnyNumber()); }); }},
    {"tTable::SetSize",
     [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table.SetSize(w.bytes.Below(80) - 1); }); }},
    {"tTable::SetGrowBy",
     [](Workplace& w) { OnAnyTable(w, [&](auto& table) { table.SetGrowBy(w.bytes.Below(20) - 1); }); }},
    {"tTable::SetData", SetData},
    {"tTable::SetDataTail", SetDataTail},
    {"tTable::Clear", [](Workplace& w) { OnAnyTable(w, [](auto& table) { table.Clear(); }); }},
    {"tTable::Compact", [](Workplace& w) { OnAnyTable(w, [](auto& table) { table.Compact(); }); }},
    {"tTable::Serialize", Serialize},
    {"tTable::ChildList", ChildList},
};

}  // namespace

std::span<const PublicCall> TableCalls() { return kTableCalls; }

}  // namespace dtsdb::fuzz

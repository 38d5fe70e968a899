/// \file
/// Random records for a model, and random additions and removals.
#pragma once

#include <random>
#include <string>

#include "tests/validation/edit.h"

namespace dtsdb::test {

/// Makes edits of a validated model; the same seed and model give the same edits.
///
/// New records name what exists and fits, as far as the model has it, so that most additions succeed. Names of new
/// records ascend and sort behind all others, or with `scattered` lie anywhere.
class RandomEdits {
 public:
  RandomEdits(Editing& edit, unsigned seed) : m_edit(edit), m_random(seed) {}

  bool scattered = false;

  /// A number from `low` to `high`.
  int Number(int low, int high) { return std::uniform_int_distribution(low, high)(m_random); }
  bool Chance(int percent) { return Number(1, 100) <= percent; }

  /// The identity of any record of a table; empty when there is none.
  template <class T>
  QString Any() {
    tTable<T>& table = m_edit.model.Table<T>();
    return table.GetCount() == 0 ? QString() : table[Number(0, table.GetCount() - 1)].id;
  }

  template <class Record>
  void Make(Record& record) {
    record = Record(Name());
    ClearLinks(record);
    Fill(record);
  }

  /// Puts a name from elsewhere into one of the record's texts.
  template <class Record>
  void Spoil(Record& record) {
    int at = Number(0, static_cast<int>(Record::Fields().size()) - 1);
    const QString texts[] = {QString(), Any<KV>(), Any<ND>(), Any<ST>(), Any<DV>(), record.id, Any<Record>()};
    const QString& text = texts[Number(0, 6)];
    for (const FieldInfo& field : Record::Fields()) {
      if (field.type != FieldType::kText) continue;
      QString& value = field.In<QString>(&record);
      if (at-- >= 0) value = at == -1 && !text.isEmpty() ? text : value;
    }
  }

 private:
  QString Name() {
    const std::string number = std::to_string(100000 + ++m_names);
    return Id((scattered ? std::string(1, "0Nz"[Number(0, 2)]) + number : "~" + number).c_str());
  }

  // Nodes and levels that fit

  /// A level and a node of it, which may be new.
  template <class Device>
  void PutOnNode(Device& device) {
    device.kv = Any<KV>();
    device.nd = NodeOf(device.kv);
  }

  /// A node of level `kv`; a new name when a few draws find none.
  QString NodeOf(const QString& kv) {
    tTable<R_KV_ND>& rows = m_edit.model.Table<R_KV_ND>();
    for (int draw = 0; draw < 10 && rows.GetCount() > 0 && Chance(90); ++draw) {
      const R_KV_ND& row = rows[Number(0, rows.GetCount() - 1)];
      if (row.kv_id == kv) return row.nd_id;
    }
    return Name();
  }

  QString StationOf(const QString& kv) { return m_edit.model.Table<KV>().GetPh(NumberOf<KV>(kv)).st; }
  template <class T>
  int NumberOf(const QString& id) {
    return m_edit.model.Table<T>().Find(T(id));
  }

  // Records

  void Fill(CO&) {}
  void Fill(DV& dv) { dv.co = Any<CO>(); }
  void Fill(ST& st) {
    st.dv = Any<DV>();
    st.type = 8;
  }
  void Fill(KV& kv) {
    kv.st = Any<ST>();
    kv.vbase = 220;
  }
  void Fill(BUS& bus) {
    PutOnNode(bus);
    Measure(bus);
  }
  void Fill(LD& ld) {
    PutOnNode(ld);
    Measure(ld);
  }
  void Fill(UN& un) {
    PutOnNode(un);
    Measure(un);
  }
  void Fill(CP& cp) {
    PutOnNode(cp);
    Measure(cp);
  }
  void Fill(CB& cb) {
    PutOnNode(cb);
    cb.znd = NodeOf(cb.kv);
    cb.flags = Chance(50) ? 1 : 4;
    cb.status_id = Any<STATUS>();
  }
  void Fill(ZBR& zbr) {
    zbr.cb = Any<CB>();
    Measure(zbr);
  }
  void Fill(XF& xf) {
    PutOnNode(xf);
    xf.type = static_cast<u8>(Number(1, 3));
    xf.zkv = Any<KV>();
    xf.znd = NodeOf(xf.zkv);
    if (!xf.kv.isEmpty()) xf.st = StationOf(xf.kv);
    Measure(xf);
  }
  /// A line of two voltages, which an addition takes and a run doesn't, is left without nodes and so refused.
  void Fill(LN& ln) {
    FillLine(ln);
    const auto vbaseOf = [this](const QString& kv) { return m_edit.model.Table<KV>().GetPh(NumberOf<KV>(kv)).vbase; };
    if (!ln.kv.isEmpty() && vbaseOf(ln.kv) != vbaseOf(ln.zkv)) ln.nd = ln.znd = QString();
  }
  void Fill(DLN& dln) { FillLine(dln); }

  template <class Line>
  void FillLine(Line& line) {
    PutOnNode(line);
    line.zkv = Any<KV>();
    line.znd = NodeOf(line.zkv);
    if (line.kv.isEmpty()) return;
    line.st = StationOf(line.kv);
    line.zst = StationOf(line.zkv);
    const int station = NumberOf<ST>(Chance(50) ? line.st : line.zst);
    if (station != -1) line.dv = m_edit.model.Table<ST>().GetPh(station).dv;
    Measure(line);
  }

  /// Names points for all measurements, now and then one that doesn't exist.
  template <class Record>
  void Measure(Record& record) {
    for (const FieldInfo& field : Record::Fields()) {
      if (field.type != FieldType::kText || field.refers != KIND_ANALOG) continue;
      if (Chance(80)) field.In<QString>(&record) = Any<ANALOG>();
    }
  }

  Editing& m_edit;
  std::mt19937 m_random;
  int m_names = 0;
};

}  // namespace dtsdb::test

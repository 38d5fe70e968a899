/// \file
/// Small networks written by hand, for tests.
#pragma once

#include <gtest/gtest.h>

#include <QString>

#include "model/dtsdb.h"
#include "model/record_bits.h"
#include "model/text.h"
#include "tests/support/temporary_directory.h"
#include "validation/nmd.h"

namespace dtsdb::test {

/// The identity of a literal in a test, which is UTF-8.
inline QString Id(const char* literal) { return IdFromLiteral(literal); }

/// Fills the input tables of a model, record by record.
///
/// It starts with the company "CO" and its district "DV". Records come out such that they pass the validation when
/// their names fit together, and without measurements (which gives warnings only). What a call doesn't set is
/// reached afterwards: `m.Of<UN>("U1").pmax = 300`. Identities are UTF-8 literals.
///
///     ModelBuilder m;
///     m.Station("S1").Kv("K1", 220);                  // a level belongs to the station named last
///     m.Breaker("B1", "K1", "N1", "N2").Unit("U1", "K1", "N1").Load("L1", "K1", "N2");
///     ASSERT_TRUE(m.Validate());
///     TP tp(&m.Db());
///
/// Link with dtsdb_validation and dtsdb_model.
class ModelBuilder {
 public:
  ModelBuilder() { Company("CO").District("DV"); }

  DTSDB& Db() { return m_database; }

  /// The table of record class `T`.
  template <class T>
  tTable<T>& Table() {
    return TableOf<T>(m_database);
  }
  /// The number of the record with identity `id`, which is in its table.
  template <class T>
  int Number(const char* id) {
    const int number = Table<T>().Find(T(Id(id)));
    EXPECT_NE(number, -1) << T::kTableName << " " << id;
    return number;
  }
  /// That record. The reference holds until another record is put into the table.
  template <class T>
  T& Of(const char* id) {
    return Table<T>().GetPh(Number<T>(id));
  }

  ModelBuilder& Company(const char* id) { return Put(CO(Id(id))); }

  ModelBuilder& District(const char* id, const char* co = "CO") {
    DV dv(Id(id));
    dv.co = Id(co);
    return Put(dv);
  }

  ModelBuilder& Station(const char* id, const char* dv = "DV") {
    ST st(Id(id));
    st.dv = Id(dv);
    m_station = st.id;
    return Put(st);
  }

  /// A level of the station named last, with limits around its base voltage.
  ModelBuilder& Kv(const char* id, float vbase = 220.0F) {
    KV kv(Id(id));
    kv.st = m_station;
    kv.vbase = vbase;
    kv.vmax = 1.1F * vbase;
    kv.vmin = 0.9F * vbase;
    return Put(kv);
  }

  ModelBuilder& Unit(const char* id, const char* kv, const char* nd) { return PutShunt<UN>(id, kv, nd); }
  ModelBuilder& Load(const char* id, const char* kv, const char* nd) { return PutShunt<LD>(id, kv, nd); }
  ModelBuilder& Cap(const char* id, const char* kv, const char* nd) { return PutShunt<CP>(id, kv, nd); }
  ModelBuilder& Bus(const char* id, const char* kv, const char* nd) { return PutShunt<BUS>(id, kv, nd); }

  ModelBuilder& Breaker(const char* id, const char* kv, const char* nd, const char* znd, bool open = false) {
    CB cb(Id(id));
    cb.kv = Id(kv);
    cb.nd = Id(nd);
    cb.znd = Id(znd);
    cb.flags = 1 | (open ? CB_OPEN : 0);
    return Put(cb);
  }

  /// A zero-impedance branch on breaker `cb`.
  ModelBuilder& Zbr(const char* id, const char* cb) {
    ZBR zbr(Id(id));
    zbr.cb = Id(cb);
    return Put(zbr);
  }

  ModelBuilder& Winding(const char* id, const char* st, const char* kv, const char* zkv, const char* nd,
                        const char* znd) {
    XF xf(Id(id));
    xf.type = 1;
    xf.st = Id(st);
    SetEnds(xf, kv, zkv, nd, znd);
    return Put(xf);
  }

  ModelBuilder& Line(const char* id, const char* dv, const char* st, const char* zst, const char* kv, const char* zkv,
                     const char* nd, const char* znd) {
    return PutLine<LN>(id, dv, st, zst, kv, zkv, nd, znd);
  }
  ModelBuilder& DcLine(const char* id, const char* dv, const char* st, const char* zst, const char* kv, const char* zkv,
                       const char* nd, const char* znd) {
    return PutLine<DLN>(id, dv, st, zst, kv, zkv, nd, znd);
  }

  ModelBuilder& Analog(const char* id) { return Put(ANALOG(Id(id))); }
  ModelBuilder& Status(const char* id) { return Put(STATUS(Id(id))); }

  /// Puts any record into its table, where no equal one may be.
  template <class T>
  ModelBuilder& Put(const T& record) {
    EXPECT_NE(Table<T>().Add(record), -1) << T::kTableName << " holds this record already";
    return *this;
  }

  /// Validates the model, with the log in a directory that is removed; true when the model is good.
  bool Validate() {
    const TemporaryDirectory directory;
    NMD nmd(&m_database);
    return nmd.DetectAll() && m_database.m_globalTable->GetPh(0).valid == 1;
  }

 private:
  template <class Shunt>
  ModelBuilder& PutShunt(const char* id, const char* kv, const char* nd) {
    Shunt shunt(Id(id));
    shunt.kv = Id(kv);
    shunt.nd = Id(nd);
    return Put(shunt);
  }

  template <class Line>
  ModelBuilder& PutLine(const char* id, const char* dv, const char* st, const char* zst, const char* kv,
                        const char* zkv, const char* nd, const char* znd) {
    Line line(Id(id));
    line.dv = Id(dv);
    line.st = Id(st);
    line.zst = Id(zst);
    SetEnds(line, kv, zkv, nd, znd);
    return Put(line);
  }

  template <class Branch>
  static void SetEnds(Branch& branch, const char* kv, const char* zkv, const char* nd, const char* znd) {
    branch.kv = Id(kv);
    branch.zkv = Id(zkv);
    branch.nd = Id(nd);
    branch.znd = Id(znd);
  }

  DTSDB m_database;
  QString m_station;
};

}  // namespace dtsdb::test

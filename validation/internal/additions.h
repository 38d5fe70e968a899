/// \file
/// Adding records to a good model.
#pragma once

#include "validation/internal/addition_tests.h"
#include "validation/internal/edit.h"

namespace dtsdb::internal {

/// Additions. What follows from a record comes out as a validation run makes it, in physical numbers: rows of
/// relations, nodes, branch ends, marks; where it doesn't, a comment at the place gives it. Each is true, or false with
/// the reason in the last error; one that fails midway leaves its part of the work.
class Additions : private Edit {
 public:
  /// `tests` are those of the same model.
  Additions(DTSDB& model, LastError& lastError, const AdditionTests& tests) : Edit(model, lastError), m_tests(tests) {}

  bool Add(CO& co);
  bool Add(DV& dv);
  bool Add(ST& st);
  bool Add(KV& kv);
  bool Add(BUS& bus);
  bool Add(LD& ld);
  bool Add(UN& un);
  bool Add(CP& cp);
  bool Add(CB& cb);
  bool Add(XF& xf);
  bool Add(ZBR& zbr);
  bool Add(LN& ln);
  bool Add(DLN& dln);

 private:
  template <class Container>
  bool AddContainer(Container& container);
  template <class Shunt>
  bool AddShunt(Shunt& shunt);
  template <class Line>
  bool AddLine(Line& line);

  // Their steps
  template <class Record>
  bool MayAdd(const Record& record) const;
  template <class Record>
  int Insert(const Record& record);
  template <class Record>
  bool Tie(int number);
  template <class Record>
  void ResolveMeasurements(Record& record);
  template <class Branch>
  bool InsertNodes(Branch& branch, const QString& kv, const QString& zkv);
  template <class Branch>
  int InsertEnds(Branch& branch, int number, const QString& nd, const QString& znd);

  const AdditionTests& m_tests;
};

}  // namespace dtsdb::internal

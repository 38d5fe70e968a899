/// \file
/// Whether a record can be added to a model.
#pragma once

#include "validation/internal/edit.h"

namespace dtsdb::internal {

/// The tests of a record that is to be added. They run in a fixed order, and the first that fails gives the reason. By
/// design they aren't those of a validation run (docs/editing.md). Nothing is written but the last error.
class AdditionTests : private Edit {
 public:
  AdditionTests(DTSDB& model, LastError& lastError) : Edit(model, lastError) {}

  bool IsValid(const CO& co) const;
  bool IsValid(const DV& dv) const;
  bool IsValid(const ST& st) const;
  bool IsValid(const KV& kv) const;
  bool IsValid(const BUS& bus) const;
  bool IsValid(const LD& ld) const;
  bool IsValid(const UN& un) const;
  bool IsValid(const CP& cp) const;
  bool IsValid(const CB& cb) const;
  bool IsValid(const XF& xf) const;
  bool IsValid(const ZBR& zbr) const;
  bool IsValid(const LN& ln) const;
  bool IsValid(const DLN& dln) const;

 private:
  template <class Shunt>
  bool IsValidShunt(const Shunt& shunt) const;
  template <class Line>
  bool IsValidLine(const Line& line) const;
  bool IsNodeElsewhere(const QString& nd, int kv) const;
};

}  // namespace dtsdb::internal

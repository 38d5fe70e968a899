/// \file
/// Removing records from a model.
#pragma once

#include "validation/internal/edit.h"

namespace dtsdb::internal {

/// Removals. A device takes its relation and its last node with it, a container what it holds; where something else
/// stays behind, a comment at the place gives it. Marks in stations and nodes stay: they only grow between validations.
/// Each is true, or false with the reason in the last error; one that fails midway leaves its part of the work.
class Removals : private Edit {
 public:
  Removals(DTSDB& model, LastError& lastError) : Edit(model, lastError) {}

  /// Removes the record of class `Record` with identity `id` by `remove`, the operation of its class.
  template <class Record>
  bool ByName(const QString& id, bool (Removals::*remove)(int)) {
    const int number = Number<Record>(id);
    return number == -1 ? Refuse(EditReasons<Record>::kNotThere) : (this->*remove)(number);
  }

  // By physical number
  bool RemoveCO(int no);
  bool RemoveDV(int no);
  bool RemoveST(int no);
  bool RemoveKV(int no);
  bool RemoveBUS(int no);
  bool RemoveLD(int no);
  bool RemoveUN(int no);
  bool RemoveCP(int no);
  bool RemoveCB(int no);
  bool RemoveXF(int no);
  bool RemoveZBR(int no);
  bool RemoveLN(int no);
  bool RemoveDLN(int no);

 private:
  template <class Shunt>
  bool RemoveShunt(int number);
  template <class Branch>
  bool RemoveBranch(int number);

  // Their steps
  template <class Row>
  bool RemoveChildren(int parent, bool (Removals::*remove)(int));
  template <class Record>
  bool RemoveTied(int number);
  template <class Row>
  bool Detach(int child, const Reason& unrelated);
  template <class Row, class Read = Row, class Written = Row>
  void Unlink(int parent, int number);
  template <class Branch, class Written>
  bool RemoveEnd(int nd, int end, const Reason& missing);
  template <class Branch, class Written>
  bool RemoveBranchEnd(int nd, int end, const Reason& levelLess, const Reason& missing);
};

}  // namespace dtsdb::internal

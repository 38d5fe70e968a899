/// \file
/// The tables that a test has imported, and what became of the objects.
#pragma once

#include "formats/import_report.h"
#include "model/dtsdb.h"
#include "model/text.h"

namespace dtsdb::tools::test {

struct ImportedTables {
  /// The record with this identity; one without identity where there is none.
  template <class T>
  T Of(const char* id) {
    tTable<T>& table = TableOf<T>(model);
    const int number = table.Find(T(IdFromLiteral(id)));
    return number == -1 ? T() : table.GetPh(number);
  }
  template <class T>
  int Count() {
    return TableOf<T>(model).GetCount();
  }

  DTSDB model;
  ImportReport report;
};

}  // namespace dtsdb::tools::test

/// \file
/// Columns of a model's tables as numpy arrays.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <string>

#include "model/any_table.h"
#include "python/core/network.h"

namespace dtsdb::python {

/// All tables with their fields, as the arguments of dtsdb.tables.TableInfo.
pybind11::list DescribeTables();

/// A table of one moment. Reading it needs the interpreter's lock and no turn of the model: nobody changes it.
class TableAtMoment {
 public:
  TableAtMoment(Snapshot snapshot, const std::string& table);

  const TableInfo& Info() const { return m_table.Info(); }
  int GetCount() const { return m_table.GetCount(); }

  /// The values of a field, in the order of the table. Of numbers an array that can't be written to: the memory of the
  /// records where these stand in their order, which is kept as long as the array; else a copy. Of texts an array of
  /// str.
  pybind11::array Column(const std::string& field) const;

  /// The values of all fields of the record with that number, by name. Throws index_error.
  pybind11::dict Record(int number) const;

  /// The number of the record with that identity, None when there is none.
  pybind11::object Find(const std::string& identity) const;

 private:
  const FieldInfo& FieldNamed(const std::string& name) const;
  bool StandsInOrder() const;
  pybind11::array Numbers(const FieldInfo& field) const;
  pybind11::array Texts(const FieldInfo& field) const;

  Snapshot m_snapshot;
  AnyTable m_table;
};

}  // namespace dtsdb::python

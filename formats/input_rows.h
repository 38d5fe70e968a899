/// \file
/// Rows of the input tables on their way into a model.
#pragma once

#include <QString>
#include <tuple>
#include <utility>
#include <vector>

#include "model/dtsdb.h"

namespace dtsdb::tools {

/// Collects rows of the tables that a validation starts from, in any order, and fills an empty model with them at
/// once: putting them into sorted tables one by one would cost more.
class InputRows {
 public:
  /// A new row with the identity `id`. The reference holds until the next row of the same table.
  template <class T>
  T& Put(const QString& id) {
    return Of<T>().emplace_back(id);
  }

  /// The rows of one table so far.
  template <class T>
  std::vector<T>& Of() {
    return std::get<std::vector<T>>(m_rows);
  }
  template <class T>
  const std::vector<T>& Of() const {
    return std::get<std::vector<T>>(m_rows);
  }

  /// Moves the rows into the tables of `database`; none are left here.
  void FillTables(DTSDB& database) {
    std::apply([&database](auto&... rows) { (Fill(database, rows), ...); }, m_rows);
  }

 private:
  template <class T>
  static void Fill(DTSDB& database, std::vector<T>& rows) {
    if (!rows.empty()) TableOf<T>(database).SetData(std::move(rows));
    rows.clear();
  }

  template <class... T>
  using Lists = std::tuple<std::vector<T>...>;
  Lists<CO, DV, ST, KV, BUS, CB, UN, LD, CP, LN, XF, ZBR, DLN, ANALOG, STATUS> m_rows;
};

}  // namespace dtsdb::tools

#include <fmt/format.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/realtime.h"
#include "formats/salvage/salvage.h"
#include "formats/stored_rows.h"
#include "model/any_table.h"
#include "model/exchange.h"
#include "model/table_info.h"
#include "rtdb/file_name.h"
#ifndef DTSDB_RTDB_FASTDB
#include "rtdb/salvage.h"
#endif

namespace dtsdb::tools {
namespace {

#ifndef DTSDB_RTDB_FASTDB

/// The rows of one table on their way into a model.
template <class T>
struct SalvagedRows {
  typename Twin<T>::Row row;
  std::vector<T> records;
};

/// Adds the table of record class `T` to `wanted`, and to `fill` what puts its rows into `model`.
template <class T>
void Want(std::vector<rtdb::SalvagedTable>& wanted, std::vector<std::function<void()>>& fill, DTSDB& model) {
  const auto rows = std::make_shared<SalvagedRows<T>>();
  wanted.push_back({.table = &Twin<T>::Row::dbDescriptor, .row = &rows->row, .take = [rows] {
                      LoadFields(&rows->records.emplace_back(), T::Fields(), &rows->row, Twin<T>::Row::Columns());
                    }});
  fill.push_back([rows, &model] {
    auto& records = rows->records;
    if (!records.empty()) TableOf<T>(model).SetData(records.data(), static_cast<int>(records.size()), false);
  });
}

std::string TableOfRows(const std::string& rowClass) {
  return QString::fromStdString(rowClass).toUpper().toStdString();
}

/// Reads the rows of a store as far as that is possible. Returns whether anything was wrong that can be named.
bool SalvagePages(const std::string& file, Salvage& salvage) {
  std::vector<rtdb::SalvagedTable> wanted;
  std::vector<std::function<void()>> fill;
  ForEachRecordClass([&]<class T> { Want<T>(wanted, fill, salvage.model); });
  const std::string wrong = rtdb::SalvageStore(file, wanted, [&salvage](const rtdb::StoreFault& fault) {
    const std::string place = fault.page > 0 ? fmt::format("page {}", fault.page) : "";
    salvage.Report({TableOfRows(fault.table), place, IdText(IdFromBytes(fault.id.c_str())), "", fault.what});
  });
  if (!wrong.empty()) return false;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    fill[i]();
    salvage.tables[i].lost.reset();
    if (wanted[i].lost) salvage.tables[i].lost = static_cast<long long>(*wanted[i].lost);
  }
  return !salvage.IsSound();
}

#else

/// The pages of an installed FastDB are not ours to read.
bool SalvagePages(const std::string&, Salvage&) { return false; }

#endif

}  // namespace

std::string CheckStoreFile(const std::string& file, long long& rows) {
  Salvage salvage;
  for (const TableInfo& table : Tables()) salvage.tables.push_back({.table = table.name});
  const bool isDamaged = SalvagePages(file, salvage);
  rows = 0;
  for (const AnyTable& table : AllTables(salvage.model)) rows += table.GetCount();
  if (!isDamaged) return "";
  const DamagedPlace& place = salvage.places.front();
  return (place.table.empty() ? "" : "table " + place.table + ": ") + place.what;
}

void SalvageRealtime(const std::string& name, Salvage& salvage) {
  try {
    RealtimeDatabase database(name, dbDatabase::dbReadOnly);
    CheckStoredRows(database, name);
    ForEachTable(salvage.model, [&](auto& table) { ReadTable(database.Db(), table); });
    database.Check();
  } catch (const Failure& failure) {
    // What can't be opened for another reason than damage is refused as it is.
    if (failure.Code() != kExitFile || !SalvagePages(rtdb::FileOf(name), salvage)) throw;
  }
}

}  // namespace dtsdb::tools

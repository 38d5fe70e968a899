#include "formats/import_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

namespace dtsdb::tools {

const ImportReport::Identity* ImportReport::Find(const std::string& table, const std::string& identity) const {
  const auto isBefore = [](const Identity& row, const std::tuple<const std::string&, const std::string&>& wanted) {
    return std::tie(row.table, row.identity) < wanted;
  };
  const auto found = std::lower_bound(identities.begin(), identities.end(), std::tie(table, identity), isBefore);
  if (found == identities.end() || found->table != table || found->identity != identity) return nullptr;
  return &*found;
}

std::string ImportReport::PlaceOf(const Identity& identity) const {
  if (identity.file < 0 || identity.file >= static_cast<int>(files.size())) return "";
  return fmt::format("{}, line {}", files[static_cast<std::size_t>(identity.file)].name, identity.line);
}

}  // namespace dtsdb::tools

#include <fmt/format.h>

#include <filesystem>

#include "formats/failure.h"
#include "formats/files.h"
#include "formats/salvage/salvage.h"
#include "formats/text_table_file.h"
#include "formats/text_tables.h"
#include "model/any_table.h"

namespace dtsdb::tools {

void SalvageTextTables(const std::string& folder, Salvage& salvage) {
  const TextTableBytes found = ReadTextTableBytes(folder);
  for (const auto& [name, what] : found.faults) salvage.Report({.table = name, .what = what});
  for (const AnyTable& table : AllTables(salvage.model)) {
    const char* const name = table.Info().name;
    const auto bytes = found.tables.find(name);
    if (bytes == found.tables.end()) {
      if (found.faults.contains(name)) salvage.Of(table.Info().kind).lost.reset();
      continue;
    }
    salvage.Of(table.Info().kind).lost = SalvageTextTable(bytes->second, table, [&](const TextFault& fault) {
      const std::string place = fault.line > 0 ? fmt::format("row {}", fault.line) : "";
      salvage.Report({name, place, fault.id, fault.column, fault.what});
    });
  }
}

}  // namespace dtsdb::tools

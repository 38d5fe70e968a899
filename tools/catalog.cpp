#include "tools/catalog.h"

#include <QString>
#include <algorithm>

#include "tools/failure.h"
#include "tools/nearest.h"
#include "tools/text_layout.h"

namespace dtsdb::tools {
namespace {

#define DTSDB_TABLE_MEANING(T, table, key, meaning) meaning,
constexpr const char* kMeanings[] = {DTSDB_TABLES(DTSDB_TABLE_MEANING)};
#undef DTSDB_TABLE_MEANING

}  // namespace

const std::vector<std::string>& TableNames() {
#define DTSDB_TABLE_NAME(T, table, key, meaning) #T,
  static const std::vector<std::string> names = {DTSDB_TABLES(DTSDB_TABLE_NAME)};
#undef DTSDB_TABLE_NAME
  return names;
}

int TablePlace(const std::string& name) {
  const auto& names = TableNames();
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

int NamedTable(const std::string& name) {
  const int place = TablePlace(QString::fromStdString(name).toUpper().toStdString());
  if (place != -1) return place;
  throw Failure(EXIT_USAGE, "there is no table " + Quoted(name) + DidYouMean(name, TableNames()));
}

const char* TableMeaning(int place) { return place >= 0 && place < kTableCount ? kMeanings[place] : ""; }

}  // namespace dtsdb::tools

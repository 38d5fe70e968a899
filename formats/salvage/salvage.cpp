#include "formats/salvage/salvage.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "formats/failure.h"
#include "formats/files.h"
#include "formats/text_tables.h"
#include "model/any_table.h"
#include "model/table_info.h"

namespace dtsdb::tools {
namespace {

/// What hangs on the numbers of records is no longer right: the next command validates the model anew.
void TakeMark(DTSDB& model) {
  for (int i = 0; i < model.m_globalTable->GetCount(); ++i) (*model.m_globalTable)[i].valid = 0;
}

void CountSaved(Salvage& salvage) {
  for (const AnyTable& table : AllTables(salvage.model)) salvage.Of(table.Info().kind).saved = table.GetCount();
}

}  // namespace

void Salvage::Report(DamagedPlace place) {
  ++placeCount;
  if (places.size() < kMostPlaces) places.push_back(std::move(place));
}

Salvage SalvageModel(const ModelName& name) {
  Salvage salvage;
  for (const TableInfo& table : Tables()) salvage.tables.push_back({.table = table.name});
  switch (name.Form()) {
    case ModelForm::kRealtimeDatabase:
      SalvageRealtime(name.Path(), salvage);
      break;
    case ModelForm::kTextTables:
      SalvageTextTables(name.Path(), salvage);
      break;
    case ModelForm::kObjectFile:
      SalvageObjectFile(name.Path(), salvage);
      break;
    case ModelForm::kCgmes:
    case ModelForm::kXiidm:
      throw Failure(kExitUsage, name.Text() +
                                    " holds a grid in an exchange format; 'dtsdb info' shows what can be "
                                    "read of it");
  }
  CountSaved(salvage);
  if (!salvage.IsSound()) TakeMark(salvage.model);
  return salvage;
}

}  // namespace dtsdb::tools

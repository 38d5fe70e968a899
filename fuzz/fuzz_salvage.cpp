// A damaged model: what is saved of it is whole, counted and can be written and read again.
//
// The first byte chooses the form, an object file, a text table or a store; the rest makes its file as
// fuzz/damaged_file.h has it.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "formats/failure.h"
#include "formats/model_io.h"
#include "formats/salvage/salvage.h"
#include "fuzz/any_model.h"
#include "fuzz/byte_source.h"
#include "fuzz/damaged_file.h"
#include "fuzz/require.h"
#include "fuzz/small_store.h"
#include "model/any_table.h"

namespace {

using namespace dtsdb;
using tools::ModelForm;
using tools::ModelName;

constexpr ModelForm kForms[] = {ModelForm::kObjectFile, ModelForm::kTextTables, ModelForm::kRealtimeDatabase};

/// Where the model of a form lies, and the one of its files that is damaged.
struct Place {
  ModelName model;
  std::string file;
};

Place PlaceOf(ModelForm form, const fuzz::StoreFolder& folder) {
  if (form == ModelForm::kObjectFile) return {ModelName(folder.File("model.dts")), folder.File("model.dts")};
  if (form == ModelForm::kTextTables) return {ModelName(folder.File("tables")), folder.File("tables/CB.csv")};
  return {ModelName::OfDatabase(folder.File()), folder.File()};
}

/// The small model in this form, and the file of it that is damaged.
std::string GoodFile(ModelForm form) {
  const fuzz::StoreFolder folder;
  const Place place = PlaceOf(form, folder);
  DTSDB model;
  fuzz::FillSmallModel(model);
  SaveModel(model, place.model);
  return fuzz::ReadFile(place.file);
}

void CheckCounts(tools::Salvage& salvage) {
  for (const AnyTable& table : AllTables(salvage.model)) {
    const auto& became = salvage.tables.at(static_cast<std::size_t>(table.Info().kind) - 1);
    fuzz::Require(became.saved == table.GetCount(), "as many records are saved as the table has");
  }
  fuzz::Require(salvage.places.size() <= salvage.placeCount, "all places are counted");
}

/// What is saved is a sound model: written as an object file it is read without a fault.
void WriteAndRead(tools::Salvage& salvage, const fuzz::StoreFolder& folder) {
  const ModelName name(folder.File("saved.dts"));
  SaveModel(salvage.model, name, ModelForm::kObjectFile);
  tools::Salvage again = tools::SalvageModel(name);
  fuzz::Require(again.IsSound(), "what is saved is sound");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool silent = fuzz::Silence();
  static const fuzz::StoreFolder folder;
  static const std::string good[] = {GoodFile(kForms[0]), GoodFile(kForms[1]), GoodFile(kForms[2])};
  fuzz::ByteSource bytes(data, size);
  const auto form = static_cast<std::size_t>(bytes.Below(3));
  const Place place = PlaceOf(kForms[form], folder);
  std::filesystem::create_directories(std::filesystem::path(place.file).parent_path());
  fuzz::WriteFile(place.file, fuzz::AnyFile(bytes, good[form]));
  try {
    tools::Salvage salvage = tools::SalvageModel(place.model);
    CheckCounts(salvage);
    WriteAndRead(salvage, folder);
  } catch (const tools::Failure&) {
    // Nothing could be looked at: a file of another program, for one.
  }
  folder.Empty();
  return silent ? 0 : 1;
}

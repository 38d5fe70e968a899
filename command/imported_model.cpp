#include "command/imported_model.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <optional>

#include "command/progress.h"
#include "formats/cgmes/import.h"
#include "formats/encoding_hint.h"
#include "formats/import_ids.h"
#include "formats/messages.h"
#include "formats/model_io.h"
#include "formats/text_layout.h"

namespace dtsdb::tools {
namespace {

Sheet ExceptionSheet(const char* name, const char* title, const std::vector<ImportReport::Exception>& exceptions) {
  Sheet sheet(name, title, {"count", "class", "why", "first"});
  sheet.HideWhenEmpty();
  for (const ImportReport::Exception& exception : exceptions) {
    sheet.Add({NumberCell(exception.count), exception.type, exception.why,
               fmt::format("{}", fmt::join(exception.names, "; "))});
  }
  return sheet;
}

/// Reads by `read(progress)`, and shows on a terminal how far that has come.
template <class Read>
auto WithProgress(const ModelName& name, const Read& read) {
  std::optional<Progress> progress;
  return read([&](std::uint64_t done, std::uint64_t total) {
    const bool isLarge = total >= 10'000'000;
    const std::uint64_t unit = isLarge ? 1'000'000 : 1'000;
    const char* const what = isLarge ? "MB of " : "kB of ";
    if (!progress) progress.emplace((total + unit - 1) / unit, what + name.Text() + " read");
    progress->Show(done / unit);
  });
}

void HintAtEncoding(const ModelName& name, DTSDB& model) {
  const std::string hint = EncodingHint(model);
  if (!hint.empty()) WriteMessage(name.Text() + ": " + hint);
}

/// A message counts what a model lacks.
void CountLeftOut(const ModelName& name, const ImportReport& report) {
  long long lacking = 0;
  for (const ImportReport::Exception& exception : report.leftOut) lacking += exception.count;
  if (lacking == 0) return;
  WriteMessage(
      fmt::format("{}: {} left out; 'dtsdb info {}' lists them", name.Text(), Counted(lacking, "object"), name.Text()));
}

}  // namespace

void AddImportOptions(CommandLine& command, ModelName& model) {
  command.AddChoice(
      "--ids", [&model](const std::string& ids) { model.Import().idsAreMrids = ids == "mrid"; }, {"name", "mrid"},
      "Identities in a model made of CGMES profiles or XIIDM: names made unique (default), or mRIDs");
  command.AddChoice(
      "--ties", [&model](const std::string& ties) { model.Import().tiesAreUnits = ties == "unit"; }, {"load", "unit"},
      "What CGMES equivalent injections and neighbours behind XIIDM boundary lines become (default: load)");
  command.AddFlag(
      "--merge-retained", model.Import().mergesRetained,
      "Closed switches that are retained in CGMES or XIIDM join their nodes, without a zero-impedance branch");
}

DTSDB ReadModel(const ModelName& name, ImportReport* report) {
  DTSDB model = WithProgress(name, [&](const ReadingProgress& progress) { return LoadModel(name, report, progress); });
  HintAtEncoding(name, model);
  return model;
}

ImportedModel LoadImported(const ModelName& name) {
  ImportedModel model;
  model.name = name;
  model.tables = ReadModel(name, &model.report);
  CountLeftOut(name, model.report);
  return model;
}

ImportedModel LoadImported(const ModelName& name, cgmes::ProfileSet& set) {
  set = WithProgress(name, [&](const ReadingProgress& progress) { return cgmes::ReadSet(name.Paths(), progress); });
  ImportedModel model;
  model.name = name;
  model.report = cgmes::ImportSet(set, name.Import(), model.tables);
  HintAtEncoding(name, model.tables);
  CountLeftOut(name, model.report);
  return model;
}

analysis::Model OpenModel(const ModelName& name) {
  const ImportedModel model = LoadImported(name);
  return analysis::Model::Of(model.tables, name.Text(), PositionsOf(model.report));
}

void WriteIdsBeside(const ImportedModel& model, const ModelName& output) {
  if (model.report.identities.empty()) {
    CopyIds(model.name, output);
  } else {
    WriteIds(model.report, output);
  }
}

void AddImportSheets(Report& report, const ImportReport& import) {
  Sheet& files = report.Add(Sheet("files", "Files", {"profiles", "version", "time", "objects", "file"}));
  for (const ImportReport::File& file : import.files) {
    files.Add({file.contents, file.version, TextOrNothing(file.time), NumberCell(file.objects), file.name});
  }
  Sheet& classes = report.Add(Sheet("classes", "Mapped", {"class", "objects", "tables"}));
  for (const ImportReport::Class& mapped : import.classes) {
    classes.Add({mapped.name, NumberCell(mapped.count), TextOrNothing(mapped.tables)});
  }
  report.Add(ExceptionSheet("left_out", "Left out", import.leftOut));
  report.Add(ExceptionSheet("changed", "Mapped otherwise", import.changed));
  report.Add(ExceptionSheet("unknown", "Not in the model", import.unknown));
}

}  // namespace dtsdb::tools

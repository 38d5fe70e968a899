#include <optional>

#include "command/commands.h"
#include "command/imported_model.h"
#include "formats/failure.h"
#include "formats/model_io.h"

namespace dtsdb::tools {
namespace {

struct ConvertOptions {
  ModelName model;
  ModelName output;
  std::optional<ModelForm> to;
};

constexpr const char* kConvertFooter =
    "rtdb:NAME as OUT updates the realtime database NAME.fdb, or makes it.\n"
    "Without --to, OUT becomes a folder of text tables when it is an existing folder, ends in '/' or has no "
    "extension,\n"
    "an XIIDM file when it ends in .xiidm, .iidm or one of these with .gz, and an object file otherwise. A folder is\n"
    "replaced only when it holds nothing but text tables.\n"
    "Of CGMES profiles and XIIDM files OUT.ids.csv shows which object each record stands for.\n\n"
    "Examples:\n"
    "  dtsdb convert examples/ieee14 grid.obj\n"
    "  dtsdb convert grid.obj tables/\n"
    "  dtsdb convert --to object tables grid\n"
    "  dtsdb convert rtdb:grid grid.obj\n"
    "  dtsdb convert cgmes:grid,boundary.zip grid.obj\n"
    "  dtsdb convert grid.obj grid.xiidm.gz";

int Convert(const ConvertOptions& options) {
  ImportedModel model = LoadImported(options.model);
  SaveModel(model.tables, options.output, options.to);
  WriteIdsBeside(model, options.output);
  return kExitGood;
}

}  // namespace

void AddConvert(CommandLine& app, Action& action) {
  AddCommand<ConvertOptions>(
      app, action, "convert", "Turn a model into another form, or copy it",
      [](CommandLine& command, ConvertOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddOutputArgument(command, options.output, "Where the model is written").Required();
        const auto choose = [&options](const std::string& form) {
          options.to = form == "text"    ? ModelForm::kTextTables
                       : form == "xiidm" ? ModelForm::kXiidm
                                         : ModelForm::kObjectFile;
        };
        AddImportOptions(command, options.model);
        command.AddChoice("--to", choose, {"text", "object", "xiidm"},
                          "Form of OUT: folder of text tables, object file or XIIDM file");
        command.Footer(kConvertFooter);
        AddExitCodes(command, "the model is written");
      },
      Convert);
}

}  // namespace dtsdb::tools

// Any bytes as an edit script: refused with file and line, or read and applied to a small good model, which a
// validation then judges.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "formats/failure.h"
#include "fuzz/any_model.h"
#include "fuzz/require.h"
#include "script/edit_run.h"
#include "script/edit_script.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace dtsdb;
  static const bool silent = fuzz::Silence();
  fuzz::Require(silent, "logs are off");
  try {
    const std::vector<tools::Edit> edits =
        tools::ReadEditScript("fuzz.txt", {reinterpret_cast<const char*>(data), size});
    DTSDB model;
    fuzz::FillSmallModel(model);
    tools::EditRun run(model);
    fuzz::Require(run.Validate(), "the small model is good");
    for (const tools::Edit& edit : edits) run.Apply(edit);
    run.Validate();
  } catch (const tools::Failure&) {
    return 0;
  }
  return 0;
}

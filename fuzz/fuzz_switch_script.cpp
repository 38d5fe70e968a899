// Any bytes as a script of switching operations: refused with file and line, or read; what can be written again reads
// as the same events, and a small grid follows them up.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "analysis/switching.h"
#include "formats/failure.h"
#include "fuzz/any_model.h"
#include "fuzz/require.h"
#include "script/switch_script.h"

namespace {

using namespace dtsdb;

void RequireSameEvents(const tools::SwitchRun& events) {
  std::string text;
  try {
    text = tools::SwitchScriptText(events);
  } catch (const tools::Failure&) {
    return;  // an identity that no script can contain
  }
  std::vector<tools::SwitchRun> again(1);
  tools::TakeSwitchScript("again.txt", text, again);
  fuzz::Require(again.size() == 1 && again[0].size() == events.size(), "as many events as before");
  for (std::size_t i = 0; i < events.size(); ++i) {
    fuzz::Require(
        again[0][i].type == events[i].type && again[0][i].on == events[i].on && again[0][i].id == events[i].id,
        "the same event as before");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool silent = fuzz::Silence();
  fuzz::Require(silent, "logs are off");
  std::vector<tools::SwitchRun> runs(1);
  try {
    tools::TakeSwitchScript("fuzz.txt", {reinterpret_cast<const char*>(data), size}, runs);
  } catch (const tools::Failure&) {
    return 0;
  }
  DTSDB tables;
  fuzz::FillSmallModel(tables);
  auto switching = analysis::Switching::Begin(analysis::Model::Of(tables));
  fuzz::Require(switching.has_value(), "the small model has a topology");
  for (const tools::SwitchRun& run : runs) {
    RequireSameEvents(run);
    if (switching->Apply(run)) fuzz::Require(switching->CompareWithFullRun().empty(), "the topology of a full run");
  }
  return 0;
}

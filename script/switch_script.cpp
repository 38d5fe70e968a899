#include "script/switch_script.h"

#include "formats/failure.h"
#include "formats/field_text.h"
#include "model/text.h"
#include "script/script_lines.h"

namespace dtsdb::tools {
namespace {

constexpr const char* kRunWord = "run";

}  // namespace

void TakeSwitchRuns(const std::vector<std::string>& words, std::vector<SwitchRun>& runs) {
  for (std::size_t at = 0; at < words.size();) {
    if (words[at] == kRunWord) {
      runs.emplace_back();
      ++at;
    } else {
      runs.back().push_back(TakeSwitchEvent(words, at));
    }
  }
}

void TakeSwitchScript(const std::string& file, std::string_view bytes, std::vector<SwitchRun>& runs) {
  ForEachLine(file, bytes, kExitUsage,
              [&runs](int, std::string_view line) { TakeSwitchRuns(SplitWords(UserText(std::string(line))), runs); });
}

std::string SwitchScriptText(const SwitchRun& events) {
  std::string script;
  for (const SwitchEvent& event : events) {
    if (!IdFromUtf8(event.id)) {
      throw Failure(kExitUsage, "the identity " + Quoted(event.id) + " is no valid " + NameOf(CurrentIdEncoding()) +
                                    ", and can't stand in a script");
    }
    script += SwitchEventText({event.type, event.on, ScriptWord(event.id)}) + "\n";
  }
  return script;
}

}  // namespace dtsdb::tools

#include "command/finding_report.h"

#include <cstdlib>
#include <map>
#include <string_view>
#include <vector>

#include "formats/field_text.h"
#include "model/table_info.h"

namespace dtsdb::tools {
namespace {

const char* SeverityName(Severity severity) { return severity == Severity::kError ? "error" : "warning"; }

Cell FieldCell(const char* field) { return field != nullptr ? Cell(std::string(field)) : Cell(); }

void AddFinding(Sheet& sheet, const Finding& finding, Language language) {
  const MessageInfo& message = *FindMessage(finding.code);
  sheet.Add({SeverityName(finding.severity), finding.code, TableName(finding.table), IdText(finding.id),
             FieldCell(finding.field), TextOf(message, language), RemedyOf(message, language)});
}

}  // namespace

Language LocaleLanguage() {
  for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const locale = std::getenv(name);
    if (locale == nullptr || *locale == '\0') continue;
    return std::string_view(locale).starts_with("zh") ? Language::kChinese : Language::kEnglish;
  }
  return Language::kEnglish;
}

std::string TextOf(const MessageInfo& message, Language language) {
  return QString::fromUtf8(message.Text(language)).trimmed().toStdString();
}

Cell RemedyOf(const MessageInfo& message, Language language) {
  const char* const remedy = message.Remedy(language);
  return remedy != nullptr ? Cell(std::string(remedy)) : Cell();
}

std::string FailureText(const NMD& nmd, Language language) {
  const MessageInfo& message = *FindMessage(nmd.LastErrorCode());
  return TextOf(message, language) + "; " + CellText(RemedyOf(message, language));
}

Sheet FindingSheet(const QList<Finding>& findings, const FindingView& view) {
  constexpr std::size_t kTableColumn = 2;
  Sheet sheet("findings", "Findings", {"severity", "code", "table", "id", "field", "text", "what_to_do"});
  sheet.HideColumn(kTableColumn);  // the code begins with it
  for (const Finding& finding : findings) {
    if (finding.severity == Severity::kError) AddFinding(sheet, finding, view.language);
  }
  if (view.least == Severity::kError) return sheet;
  std::map<std::string_view, int> shown;
  for (const Finding& finding : findings) {
    if (finding.severity != Severity::kWarning) continue;
    if (view.mostOfAKind == 0 || ++shown[finding.code] <= view.mostOfAKind) AddFinding(sheet, finding, view.language);
  }
  return sheet;
}

Sheet WarningKinds(const QList<Finding>& findings, Language language) {
  std::map<std::string_view, long long> counts;
  std::vector<const char*> codes;
  for (const Finding& finding : findings) {
    if (finding.severity == Severity::kWarning && ++counts[finding.code] == 1) codes.push_back(finding.code);
  }
  Sheet sheet("kinds", "Warnings by kind", {"count", "code", "text"});
  sheet.HideWhenEmpty();
  for (const char* const code : codes) {
    sheet.Add({NumberCell(counts[code]), code, TextOf(*FindMessage(code), language)});
  }
  return sheet;
}

}  // namespace dtsdb::tools

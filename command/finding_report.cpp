#include "command/finding_report.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <string_view>
#include <vector>

#include "formats/field_text.h"
#include "model/table_info.h"

namespace dtsdb::tools {
namespace {

Cell NameCell(const char* field) { return field != nullptr ? Cell(std::string(field)) : Cell(); }

std::vector<Cell> FindingCells(const Finding& finding, Language language) {
  const MessageInfo& message = *FindMessage(finding.code);
  return {SeverityName(finding.severity), finding.code,
          TableName(finding.table),       IdText(finding.id),
          NameCell(finding.field),        TextOf(message, language),
          RemedyOf(message, language)};
}

/// The mRID of the object that a finding is about, and where it is defined.
std::vector<Cell> ObjectCells(const Finding& finding, const ImportReport& import) {
  const ImportReport::Identity* const object = import.Find(TableName(finding.table), IdText(finding.id));
  if (object == nullptr) return {Cell(), Cell()};
  const std::string place = import.PlaceOf(*object);
  return {object->mrid, place.empty() ? Cell() : Cell(place)};
}

/// The warnings with one code.
struct KindCount {
  const char* code;
  long long count;
  std::string first;  ///< identities of the first records

  void Count(const Finding& finding) {
    constexpr int kFirst = 3;
    ++count;
    if (count <= kFirst) first += (count > 1 ? ", " : "") + IdText(finding.id);
    if (count == kFirst + 1) first += ", ...";
  }
};

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

Sheet FindingSheet(const QList<Finding>& findings, Severity least, Language language, const ImportReport& import) {
  constexpr std::size_t kTableColumn = 2;
  const bool isImported = !import.identities.empty();
  std::vector<std::string> columns = {"severity", "code", "table", "id", "field", "text", "what_to_do"};
  if (isImported) columns.insert(columns.end(), {"mrid", "source"});
  Sheet sheet("findings", least == Severity::kError ? "Errors" : "Findings", columns);
  sheet.HideColumn(kTableColumn);  // the code begins with it
  for (const Severity severity : {Severity::kError, Severity::kWarning}) {
    if (severity > least) break;
    for (const Finding& finding : findings) {
      if (finding.severity != severity) continue;
      std::vector<Cell> cells = FindingCells(finding, language);
      if (isImported) std::ranges::move(ObjectCells(finding, import), std::back_inserter(cells));
      sheet.Add(std::move(cells));
    }
  }
  return sheet;
}

Sheet WarningKinds(const QList<Finding>& findings, Language language) {
  std::vector<KindCount> kinds;
  std::map<std::string_view, std::size_t> places;
  for (const Finding& finding : findings) {
    if (finding.severity != Severity::kWarning) continue;
    const auto [place, isNew] = places.try_emplace(finding.code, kinds.size());
    if (isNew) kinds.push_back({finding.code, 0, ""});
    kinds[place->second].Count(finding);
  }
  Sheet sheet("kinds", "Warnings by kind", {"count", "code", "first", "text", "what_to_do"});
  sheet.HideWhenEmpty();
  for (const KindCount& kind : kinds) {
    const MessageInfo& message = *FindMessage(kind.code);
    sheet.Add({NumberCell(kind.count), kind.code, kind.first, TextOf(message, language), RemedyOf(message, language)});
  }
  return sheet;
}

}  // namespace dtsdb::tools

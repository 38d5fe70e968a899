#include "formats/encoding_hint.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "model/any_table.h"
#include "model/text.h"

namespace dtsdb::tools {
namespace {

constexpr std::size_t kEnough = 1000;  // wrong ones among so many texts can't all seem right

bool IsAscii(const QString& text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

/// Adds the texts of a record that aren't ASCII.
void AddTexts(const TableInfo& table, const void* record, std::vector<QByteArray>& texts) {
  for (const FieldInfo& field : table.fields()) {
    if (field.type != FieldType::kText) continue;
    const QString& text = field.In<QString>(record);
    if (!IsAscii(text)) texts.push_back(IdToBytes(text));
  }
}

std::vector<QByteArray> FirstTexts(DTSDB& model) {
  std::vector<QByteArray> texts;
  for (const AnyTable& table : AllTables(model)) {
    for (int i = 0; i < table.GetCount() && texts.size() < kEnough; ++i) AddTexts(table.Info(), table[i], texts);
  }
  return texts;
}

bool AreValid(const std::vector<QByteArray>& texts, IdEncoding encoding) {
  return std::all_of(texts.begin(), texts.end(),
                     [encoding](const QByteArray& text) { return ExactTextFromBytes(text, encoding).has_value(); });
}

}  // namespace

std::string EncodingHint(DTSDB& model) {
  const IdEncoding read = CurrentIdEncoding();
  const IdEncoding other = read == IdEncoding::kGbk ? IdEncoding::kUtf8 : IdEncoding::kGbk;
  const std::vector<QByteArray> texts = FirstTexts(model);
  if (AreValid(texts, read) || !AreValid(texts, other)) return "";
  return fmt::format("its identities are no valid {} but valid {}; --encoding {} reads them as such", NameOf(read),
                     NameOf(other), QByteArray(NameOf(other)).toLower().constData());
}

}  // namespace dtsdb::tools

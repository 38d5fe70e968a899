#include "formats/import/identities.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <tuple>
#include <utility>

#include "model/table_info.h"
#include "model/text.h"

namespace dtsdb::tools {
namespace {

/// Letters that are no letter with an accent, and what is written for them.
struct Letter {
  char32_t letter;
  const char* written;
};
constexpr Letter kLetters[] = {
    {U'ß', "ss"}, {U'Æ', "AE"}, {U'æ', "ae"}, {U'Ø', "O"},  {U'ø', "o"},  {U'Œ', "OE"}, {U'œ', "oe"},     {U'Đ', "D"},
    {U'đ', "d"},  {U'Ð', "D"},  {U'ð', "d"},  {U'Þ', "Th"}, {U'þ', "th"}, {U'Ł', "L"},  {U'ł', "l"},      {U'ı', "i"},
    {U'Ħ', "H"},  {U'ħ', "h"},  {U'Ŧ', "T"},  {U'ŧ', "t"},  {U'Ŋ', "N"},  {U'ŋ', "n"},  {U'\u00A0', " "},
};

/// One letter in what the model's texts can hold.
QString Written(char32_t letter) {
  QString text = QString::fromUcs4(&letter, 1);
  if (IdFromText(text)) return text;
  const auto* const known = std::find_if(std::begin(kLetters), std::end(kLetters),
                                         [letter](const Letter& row) { return row.letter == letter; });
  if (known != std::end(kLetters)) return QString::fromLatin1(known->written);
  QString bare;
  for (const char32_t part : text.normalized(QString::NormalizationForm_KD).toUcs4()) {
    if (QChar::isMark(part)) continue;
    const QString piece = QString::fromUcs4(&part, 1);
    if (!IdFromText(piece)) return QStringLiteral("?");
    bare += piece;
  }
  return bare.isEmpty() ? QStringLiteral("?") : bare;
}

/// The beginning of a name: a file from a stranger could have millions of records with a name of 64 KiB in each.
QString Shortened(const QString& text) {
  constexpr qsizetype kMost = 255;
  if (text.size() <= kMost) return text;
  return text.left(text[kMost - 1].isHighSurrogate() ? kMost - 1 : kMost);
}

/// True for letters of ASCII, with one blank between words.
bool IsPlain(QStringView text) {
  bool isBlank = true;
  for (const QChar c : text) {
    if (c.unicode() < 0x20 || c.unicode() > 0x7E || (isBlank && c == u' ')) return false;
    isBlank = c == u' ';
  }
  return !isBlank;
}

long long Key(int object, int part) { return (static_cast<long long>(object) << 32) | static_cast<unsigned>(part); }

/// `text`, with a number behind it where `used` has it already.
QString Numbered(const QString& text, QHash<QString, int>& last, const QSet<QString>& used) {
  if (!used.contains(text)) return text;
  int& number = last[text];
  number = std::max(number, 1);
  QString numbered;
  do {
    numbered = text + QStringLiteral(" (%1)").arg(++number);
  } while (used.contains(numbered));
  return numbered;
}

}  // namespace

QString Representable(const QString& text) {
  if (IsPlain(text)) return text;
  QString simple = text.simplified().normalized(QString::NormalizationForm_C);
  if (IdFromText(simple)) return simple;
  QString written;
  for (const char32_t letter : simple.toUcs4()) written += Written(letter);
  return written;
}

void Identities::Add(TableKind table, int object, const QString& container, int part, const QString& suffix) {
  const ObjectName called = m_nameOf(object);
  const QString name = QString::fromStdString(m_usesIds ? called.id : called.name) + suffix;
  AddEntry(table, {object, part, false, Representable(name), container, called.id + suffix.toStdString(), {}});
}

void Identities::AddMade(TableKind table, int number, const QString& name, const QString& container) {
  AddEntry(table, {number, 0, true, Representable(name), container, name.toStdString(), {}});
}

void Identities::AddEntry(TableKind table, Entry entry) {
  Table& added = m_tables[table];
  entry.text = Shortened(entry.text);
  added.places.emplace(Key(entry.object, entry.part), added.entries.size());
  added.entries.push_back(std::move(entry));
}

void Identities::Settle(TableKind table) {
  std::vector<Entry>& entries = m_tables[table].entries;
  QHash<QString, int> count;
  for (const Entry& entry : entries) ++count[entry.text];
  std::vector<Entry*> shared;
  QSet<QString> used;
  for (Entry& entry : entries) {
    if (count.value(entry.text) == 1) {
      used.insert(entry.text);
    } else {
      shared.push_back(&entry);
    }
  }
  std::sort(shared.begin(), shared.end(), [](const Entry* a, const Entry* b) { return a->order < b->order; });
  QHash<QString, int> last;
  for (Entry* const entry : shared) {
    if (!entry->container.isEmpty()) entry->text = entry->container + u'/' + entry->text;
    entry->text = Numbered(entry->text, last, used);
    used.insert(entry->text);
  }
  for (Entry& entry : entries) entry.id = IdFromText(entry.text).value_or(QString());
}

const Identities::Entry* Identities::Find(TableKind table, int object, int part) const {
  const auto found = m_tables.find(table);
  if (found == m_tables.end()) return nullptr;
  const auto place = found->second.places.find(Key(object, part));
  return place == found->second.places.end() ? nullptr : &found->second.entries[place->second];
}

bool Identities::Has(TableKind table, int object, int part) const { return Find(table, object, part) != nullptr; }

QString Identities::Id(TableKind table, int object, int part) const {
  const Entry* const entry = Find(table, object, part);
  return entry == nullptr ? QString() : entry->id;
}

QString Identities::Text(TableKind table, int object, int part) const {
  const Entry* const entry = Find(table, object, part);
  return entry == nullptr ? QString() : entry->text;
}

std::vector<ImportReport::Identity> Identities::List() const {
  std::vector<ImportReport::Identity> list;
  for (const auto& [kind, table] : m_tables) {
    const char* const name = TableOfKind(static_cast<TableKind>(kind)).name;
    for (const Entry& entry : table.entries) {
      if (entry.isMade) continue;
      ObjectName called = m_nameOf(entry.object);
      list.push_back(
          {name, entry.text.toStdString(), std::move(called.id), std::move(called.name), called.file, called.line});
    }
  }
  std::sort(list.begin(), list.end(),
            [](const auto& a, const auto& b) { return std::tie(a.table, a.identity) < std::tie(b.table, b.identity); });
  return list;
}

}  // namespace dtsdb::tools

#include <fmt/format.h>

#include <QBuffer>
#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/files.h"
#include "formats/salvage/big_endian.h"
#include "formats/salvage/record_scan.h"
#include "formats/salvage/salvage.h"
#include "model/any_table.h"
#include "model/archive_bytes.h"
#include "model/objectfile.h"
#include "model/qarchive.h"
#include "model/table_image.h"

namespace dtsdb::tools {
namespace {

constexpr std::size_t kHead = 28;  // bytes of the numbers in front of a table's slots
constexpr std::size_t kSlot = 16;
constexpr int kEnd = kTableCount + 1;  // behind the last kind code

/// The numbers in front of a table's slots.
struct TableHead {
  int size = 0;
  int count = 0;
  bool isPossible = false;
};

/// The salvage of one object file.
class ObjectFileSalvage {
 public:
  ObjectFileSalvage(std::string_view file, Salvage& salvage) : m_file(file), m_salvage(salvage) {
    m_bytes = QByteArray::fromRawData(file.data(), static_cast<qsizetype>(file.size()));
    m_device.setBuffer(&m_bytes);
    m_device.open(QIODevice::ReadOnly);
  }

  void Run() {
    std::size_t at = 0;
    for (int kind = KIND_NONE + 1; kind < kEnd;) {
      const std::size_t begin = at;
      QString refusal;
      if (Load(m_salvage.model, kind, at, &refusal)) {
        ++kind;
        continue;
      }
      const Place next = FindNext(kind, begin);
      SalvageTable(kind, begin, next, refusal);
      for (++kind; kind < next.kind; ++kind) LoseTable(kind);
      at = next.at;
    }
    if (at < m_file.size()) {
      m_salvage.Report({.place = fmt::format("byte {}", at),
                        .what = fmt::format("{} bytes stand behind the last table", m_file.size() - at)});
    }
  }

 private:
  /// Where an undamaged table begins; the end of the file for kEnd.
  struct Place {
    int kind;
    std::size_t at;
  };

  /// Loads the table of `kind` from `at` and moves `at` behind it, as the reader of object files does. Counts the work.
  bool Load(DTSDB& model, int kind, std::size_t& at, QString* refusal = nullptr) {
    m_device.seek(static_cast<qint64>(at));
    QArchive archive(&m_device, true);
    ForEachRecordClass([&]<class T> {
      if (T::kKind == kind) TableOf<T>(model).Serialize(archive);
    });
    const auto end = static_cast<std::size_t>(m_device.pos());
    m_work += kHead + (end > at ? end - at : 0);
    // The number of a text's bytes that is damaged may make it a text of half the file.
    if (!archive.IsRefused() && HasOddText(TableOfKind(model, static_cast<TableKind>(kind)))) {
      archive.SetPlace(TableOfKind(static_cast<TableKind>(kind)).name, -1);
      archive.Refuse(QStringLiteral("a text is damaged"));
    }
    if (archive.IsRefused()) {
      if (refusal != nullptr) *refusal = archive.Refusal();
      return false;
    }
    at = end;
    return true;
  }

  /// Whether a text has a character that no identity has.
  static bool HasOddText(const AnyTable& table) {
    const auto isOdd = [](QChar c) { return c.isNull() || c.unicode() > 0xFF; };
    for (const FieldInfo& field : table.Info().fields()) {
      if (field.type != FieldType::kText) continue;
      for (int i = 0; i < table.GetCount(); ++i) {
        const auto& text = field.In<QString>(table[i]);
        if (std::any_of(text.begin(), text.end(), isOdd)) return true;
      }
    }
    return false;
  }

  /// The time of the search for undamaged tables is bounded by the size of the file.
  bool IsTired() const { return m_work > 16 * m_file.size() + (std::size_t{1} << 20); }

  TableHead HeadAt(std::size_t at) const {
    TableHead head;
    if (at > m_file.size() || m_file.size() - at < kHead) return head;
    std::array<int, 7> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      numbers[i] = static_cast<int>(BigEndian32(m_file, at + 4 * i));
    }
    const auto [size, first, last, firstFree, lastFree, count, ordered] = numbers;
    const auto most = static_cast<long long>((m_file.size() - at - kHead) / kSlot);
    const auto isLink = [size = size](int slot, bool isNone) { return isNone ? slot == -1 : slot >= 0 && slot < size; };
    head.size = size;
    head.count = count;
    head.isPossible = size >= 0 && size <= most && count >= 0 && count <= size && (ordered == 0 || ordered == 1) &&
                      isLink(first, count == 0) && isLink(last, count == 0) && isLink(firstFree, count == size) &&
                      isLink(lastFree, count == size);
    return head;
  }

  /// Whether the tables from `kind` on are at `at`, up to the end of the file or at least two of them.
  bool AreTablesAt(int kind, std::size_t at, bool toTheEnd) {
    const int last = toTheEnd ? kEnd : std::min(kind + 2, kEnd);
    bool isEmpty = true;
    for (; kind < last; ++kind) {
      const TableHead head = HeadAt(at);
      if (!head.isPossible || !Load(m_scratch, kind, at)) return false;
      isEmpty = isEmpty && head.size == 0;
    }
    return kind == kEnd ? at == m_file.size() : !isEmpty && HeadAt(at).isPossible;
  }

  /// The next table behind the damaged one of `kind`, which begins at `begin`.
  Place FindNext(int kind, std::size_t begin) {
    for (const bool toTheEnd : {true, false}) {
      for (std::size_t at = begin + kHead; at + kHead <= m_file.size() && !IsTired(); ++at) {
        ++m_work;
        if (!HeadAt(at).isPossible) continue;
        for (int next = kind + 1; next < kEnd && !IsTired(); ++next) {
          if (AreTablesAt(next, at, toTheEnd)) return {next, at};
        }
      }
    }
    return {kEnd, m_file.size()};
  }

  void LoseTable(int kind) {
    TableSalvage& table = m_salvage.Of(static_cast<TableKind>(kind));
    table.lost.reset();
    m_salvage.Report({.table = table.table, .what = "the table can't be found in the file"});
  }

  void SalvageTable(int kind, std::size_t begin, const Place& next, const QString& refusal) {
    const auto tableKind = static_cast<TableKind>(kind);
    const TableInfo& info = TableOfKind(tableKind);
    const bool isCutOff = next.kind == kEnd && kind + 1 < kEnd;
    const ScanEnd end = isCutOff ? ScanEnd::kFile : next.kind == kind + 1 ? ScanEnd::kLastRecord : ScanEnd::kUnknown;
    FoundRecords found;
    if (end == ScanEnd::kLastRecord) found = AllRecords(info, begin, next.at);
    if (found.lost != 0) found = SomeRecords(info, begin, next.at, end);
    const AnyTable table = TableOfKind(m_salvage.model, tableKind);
    const long long dropped = Take(table, found.runs);
    TableSalvage& entry = m_salvage.Of(tableKind);
    entry.lost.reset();
    if (found.lost >= 0) entry.lost = found.lost + dropped;
    ReportTable(info, found, refusal);
  }

  /// Table, row and byte stand in the refusal; the row is the reader's way to count, from 0 in key order.
  void ReportTable(const TableInfo& info, const FoundRecords& found, const QString& refusal) {
    const QString place = refusal.section(QStringLiteral(": "), 0, 0).section(QStringLiteral(", "), 1);
    const QString what = refusal.section(QStringLiteral(": "), 1);
    const std::string id = found.damaged.empty() ? "" : TextAt(info, found.damaged.front());
    m_salvage.Report({info.name, place.toStdString(), id, "", what.toStdString()});
    for (std::size_t i = 1; i < found.damaged.size(); ++i) {
      m_salvage.Report({info.name, fmt::format("byte {}", found.damaged[i]), TextAt(info, found.damaged[i]), "",
                        "a record is damaged"});
    }
  }

  /// The first text of the record at `at`, as far as it can be read.
  std::string TextAt(const TableInfo& info, std::size_t at) const {
    constexpr std::size_t kMost = 200;
    if (info.key == RecordKey::kNumbered || at + 4 > m_file.size()) return "";
    const std::size_t size = std::min<std::size_t>(BigEndian32(m_file, at), kMost);
    QString id;
    for (std::size_t i = at + 4; i + 1 < std::min(at + 4 + size, m_file.size()) && m_file[i] == 0; i += 2) {
      if (m_file[i + 1] == 0) break;
      id += QChar(static_cast<char16_t>(static_cast<unsigned char>(m_file[i + 1])));
    }
    return IdText(id);
  }

  /// All records of a table whose numbers are damaged alone: for one number of slots they fill the table to its end.
  FoundRecords AllRecords(const TableInfo& info, std::size_t begin, std::size_t end) {
    FoundRecords found;
    if (end - begin < kHead) return found;
    RecordScan scan(m_file, info, begin + kHead, end);
    scan.ScanFromBehind();
    const TableHead head = HeadAt(begin);
    const auto most = static_cast<int>((end - begin - kHead) / kSlot);
    const auto named = static_cast<int>(BigEndian32(m_file, begin));
    std::vector<int> sizes;
    if (named >= 0 && named <= most) sizes.push_back(named);
    for (int size = 0; size <= most; ++size) sizes.push_back(size);
    for (const int size : sizes) {
      const std::size_t at = begin + kHead + kSlot * static_cast<std::size_t>(size);
      const int count = scan.CountFrom(at);
      if (count < 0 || count > size || IsTired()) continue;
      const bool fitsHead = size == head.size && count == head.count;
      if (!fitsHead && !AreSlots(begin + kHead, size)) continue;
      if (count > 0) found.runs.push_back({at, count});
      found.lost = 0;
      return found;
    }
    return found;
  }

  /// Whether the bytes from `at` can be those of `size` slots, few of them damaged.
  bool AreSlots(std::size_t at, int size) {
    m_work += kSlot * static_cast<std::size_t>(size);
    const int most = size / 2;
    int wrong = 0;
    for (int i = 0; i < 4 * size && wrong <= most; ++i) {
      const auto number = static_cast<int>(BigEndian32(m_file, at + 4 * static_cast<std::size_t>(i)));
      if (number < -1 || number >= size) ++wrong;
    }
    return wrong <= most;
  }

  /// The records around damaged ones, behind the slots that the table's head counts.
  FoundRecords SomeRecords(const TableInfo& info, std::size_t begin, std::size_t end, ScanEnd scanEnd) const {
    FoundRecords none;
    if (end - begin < kHead) return none;
    const auto size = static_cast<int>(BigEndian32(m_file, begin));
    if (size < 0 || static_cast<std::size_t>(size) > (end - begin - kHead) / kSlot) return none;
    const auto count = static_cast<int>(BigEndian32(m_file, begin + 20));
    RecordScan scan(m_file, info, begin + kHead + kSlot * static_cast<std::size_t>(size), end);
    if (!scan.HasTexts() && scanEnd != ScanEnd::kFile) return none;
    return FindRecords(scan, count >= 0 && count <= size ? count : -1, scanEnd);
  }

  /// Puts the records of `runs` into `table`, except those that stand out of the order of the keys: they can't be what
  /// was written. Returns how many those are.
  long long Take(const AnyTable& table, const std::vector<FoundRecords::Run>& runs) {
    const std::vector<internal::FieldRun> fields = internal::FieldRunsOf(table.Info().fields());
    std::unique_ptr<NewRecords> read = table.MakeRecords();
    for (const FoundRecords::Run& run : runs) {
      m_device.seek(static_cast<qint64>(run.begin));
      internal::ArchiveReader reader(m_device);
      for (int i = 0; i < run.count; ++i) reader.TakeRecord(read->Add(), fields);
    }
    const std::vector<std::size_t> ascending = Ascending(table, *read);
    const auto dropped = static_cast<long long>(read->Count() - ascending.size());
    if (dropped > 0) {
      std::unique_ptr<NewRecords> kept = table.MakeRecords();
      for (const std::size_t place : ascending) CopyRecord(table.Info(), (*read)[place], kept->Add());
      read = std::move(kept);
    }
    if (read->Count() > 0) {
      table.SetData(*read);
    } else {
      Empty(table.Info().kind);
    }
    return dropped;
  }

  /// The places of the records without those at which the keys fall. A file in another order keeps all: many fall then.
  static std::vector<std::size_t> Ascending(const AnyTable& table, const NewRecords& records) {
    std::vector<bool> isOdd(records.Count(), false);
    std::size_t falls = 0;
    for (std::size_t i = 1; i < records.Count(); ++i) {
      if (!table.IsLess(records[i], records[i - 1])) continue;
      isOdd[i] = isOdd[i - 1] = true;
      ++falls;
    }
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < records.Count(); ++i) {
      if (!isOdd[i] || falls > 2 + records.Count() / 8) places.push_back(i);
    }
    return places;
  }

  /// What the reader took for the table's records goes.
  void Empty(int kind) {
    ForEachRecordClass([&]<class T> {
      if (T::kKind == kind) TableOf<T>(m_salvage.model).Clear();
    });
  }

  static void CopyRecord(const TableInfo& info, const void* from, void* to) {
    for (const FieldInfo& field : info.fields()) {
      VisitValue(field, from, [&]<class V>(const V& value) { field.In<V>(to) = value; });
    }
  }

  std::string_view m_file;
  Salvage& m_salvage;
  QByteArray m_bytes;
  QBuffer m_device;
  DTSDB m_scratch;
  std::size_t m_work = 0;
};

}  // namespace

void SalvageObjectFile(const std::string& path, Salvage& salvage) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    RefuseFile(path, error ? error.message() : "is neither a file nor a folder");
  }
  if (ReadObjectFile(salvage.model, QtPath(path)).isNull()) return;
  const std::string bytes = ReadFile(path);
  if (bytes.empty()) RefuseFile(path, "is empty");
  ObjectFileSalvage(bytes, salvage).Run();
}

}  // namespace dtsdb::tools

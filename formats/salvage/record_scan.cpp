#include "formats/salvage/record_scan.h"

#include <algorithm>

#include "formats/salvage/big_endian.h"

namespace dtsdb::tools {
namespace {

constexpr std::uint32_t kNullText = 0xFFFFFFFF;
constexpr std::size_t kUnit = 2;  // bytes of a character
/// The size of a longer text would have no zero in it. With one, no text can begin within another: so the time of a
/// scan grows with its bytes and no faster.
constexpr std::size_t kLongestText = 0xFFFE;

}  // namespace

RecordScan::RecordScan(std::string_view file, const TableInfo& table, std::size_t begin, std::size_t end)
    : m_file(file),
      m_runs(internal::FieldRunsOf(table.fields())),
      m_keyTexts(table.key == RecordKey::kNumbered ? 0 : table.KeyFields().size()),
      m_begin(begin),
      m_end(end) {}

bool RecordScan::HasTexts() const {
  return std::any_of(m_runs.begin(), m_runs.end(), [](const internal::FieldRun& run) { return run.width == 0; });
}

std::size_t RecordScan::TextEnd(std::size_t at) const {
  if (m_end - at < sizeof(std::uint32_t)) return 0;
  const std::uint32_t size = BigEndian32(m_file, at);
  at += sizeof(std::uint32_t);
  if (size == kNullText) return at;
  if (size % kUnit != 0 || size > m_end - at || size > kLongestText) return 0;
  for (std::size_t i = at; i < at + size; i += kUnit) {
    if (m_file[i] != 0 || m_file[i + 1] == 0) return 0;
  }
  return at + size;
}

std::size_t RecordScan::EndOf(std::size_t at) const {
  if (at < m_begin) return 0;
  std::size_t texts = 0;
  bool hasKey = false;
  for (const internal::FieldRun& run : m_runs) {
    if (run.width == 0) {
      const std::size_t begin = at;
      at = TextEnd(at);
      if (at == 0) return 0;
      if (at > begin + sizeof(std::uint32_t)) hasKey = true;
      if (++texts == m_keyTexts && !hasKey) return 0;
      continue;
    }
    const std::size_t size = run.width * run.count;
    if (size > m_end - at) return 0;
    at += size;
  }
  return at;
}

void RecordScan::ScanFromBehind() {
  m_counts.assign(m_end - m_begin + 1, -1);
  m_counts.back() = 0;
  for (std::size_t at = m_end; at-- > m_begin;) {
    const std::size_t end = EndOf(at);
    if (end == 0) continue;
    const std::int32_t behind = m_counts[end - m_begin];
    if (behind >= 0) m_counts[at - m_begin] = behind + 1;
  }
}

int RecordScan::CountFrom(std::size_t at) const {
  return m_counts.empty() || at < m_begin || at > m_end ? -1 : m_counts[at - m_begin];
}

namespace {

/// Where the records of a run begin, up to `most` of them, and where the next one would.
std::vector<std::size_t> StartsFrom(const RecordScan& scan, std::size_t at, int most) {
  std::vector<std::size_t> starts{at};
  while (most < 0 || static_cast<int>(starts.size()) <= most) {
    const std::size_t end = scan.EndOf(starts.back());
    if (end == 0) break;
    starts.push_back(end);
  }
  return starts;
}

/// Where the longest run of records to the end of the scan begins, of less than `count` ones.
std::size_t LastRun(const RecordScan& scan, std::size_t from, int count) {
  std::size_t best = scan.End();
  for (std::size_t at = scan.End(); at-- > from;) {
    const int behind = scan.CountFrom(at);
    if (behind > scan.CountFrom(best) && (count < 0 || behind < count)) best = at;
  }
  return best;
}

/// Finds the runs between damaged records, of three and more, from `from` up to `to`; at most `most` records. The last
/// record of a run is left out: a damaged text may have ended it too early.
void FindBetween(const RecordScan& scan, std::size_t from, std::size_t to, long long most, FoundRecords& found) {
  constexpr std::size_t kLeast = 3;
  for (std::size_t at = from + 1; at < to && most > 0; ++at) {
    std::vector<std::size_t> starts = StartsFrom(scan, at, static_cast<int>(most));
    while (starts.back() > to) starts.pop_back();
    if (starts.size() <= kLeast) continue;
    const std::size_t count = starts.size() - 2;
    found.runs.push_back({at, static_cast<int>(count)});
    most -= static_cast<long long>(count);
    at = starts[count];
    found.damaged.push_back(at);
  }
}

}  // namespace

FoundRecords FindRecords(RecordScan& scan, int count, ScanEnd end) {
  /// What a file that is cut off has of its last record.
  constexpr std::size_t kStump = 4096;
  FoundRecords found;
  const bool exact = end == ScanEnd::kLastRecord;
  if (exact) scan.ScanFromBehind();
  std::vector<std::size_t> starts = StartsFrom(scan, scan.Begin(), count);
  std::size_t second = scan.End();
  int behind = 0;
  if (exact) {
    // Where it isn't known how many there are, nothing in front of the first damaged record is taken for one behind it.
    second = LastRun(scan, count < 0 ? starts.back() : scan.Begin(), count);
    behind = std::max(0, scan.CountFrom(second));
  }
  while (starts.size() > 1 && starts.back() > second) starts.pop_back();
  auto front = static_cast<int>(starts.size()) - 1;
  // A damaged text may have been read to an end that is none: the last record in front is the damaged one then.
  if (exact && count >= 0) {
    front = std::min(front, std::max(0, count - 1 - behind));
  } else if (front > 0 && front != count && (end != ScanEnd::kFile || scan.End() - starts.back() > kStump)) {
    --front;
  }
  if (front > 0) found.runs.push_back({scan.Begin(), front});
  const std::size_t damaged = starts[static_cast<std::size_t>(front)];
  found.damaged.push_back(damaged);
  if (exact && count - front - behind > 1) FindBetween(scan, damaged, second, count - front - behind - 1, found);
  if (behind > 0) found.runs.push_back({second, behind});
  long long saved = 0;
  for (const FoundRecords::Run& run : found.runs) saved += run.count;
  if (count >= 0) found.lost = std::max<long long>(0, count - saved);
  return found;
}

}  // namespace dtsdb::tools

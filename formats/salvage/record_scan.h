/// \file
/// Where the records of a table lie among the bytes of a damaged object file.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "model/field_runs.h"
#include "model/table_info.h"

namespace dtsdb::tools {

/// Finds records that can be what a program has written: the bytes of each text are in the file, and none has a zero or
/// a character above 0xFF, which no identity has. So a text that doesn't begin where it should is found out with
/// near certainty, and the records behind a damaged one are found again.
class RecordScan {
 public:
  /// Scans the bytes from `begin` up to `end` of `file` for records of `table`. One without any identity isn't found.
  RecordScan(std::string_view file, const TableInfo& table, std::size_t begin, std::size_t end);

  /// False for records of numbers alone: any bytes can be one.
  bool HasTexts() const;

  /// The end of the record that begins at `at`; 0 where none can.
  std::size_t EndOf(std::size_t at) const;

  /// Whether the last record ends where the scan does: then the records can be found from behind too. Takes 4 bytes for
  /// each byte that is scanned.
  void ScanFromBehind();
  /// How many records lie from `at` to the end of the scan without a gap; -1 where they don't.
  int CountFrom(std::size_t at) const;

  std::size_t Begin() const { return m_begin; }
  std::size_t End() const { return m_end; }

 private:
  std::size_t TextEnd(std::size_t at) const;

  std::string_view m_file;
  std::vector<internal::FieldRun> m_runs;
  std::size_t m_keyTexts;  // leading texts of which one isn't empty
  std::size_t m_begin;
  std::size_t m_end;
  std::vector<std::int32_t> m_counts;  // by the distance from m_begin
};

/// The records of a damaged table.
struct FoundRecords {
  /// Records that lie behind each other.
  struct Run {
    std::size_t begin = 0;
    int count = 0;
  };
  std::vector<Run> runs;
  long long lost = -1;               ///< -1: unknown
  std::vector<std::size_t> damaged;  ///< where records that can't be read begin, one for each gap
};

/// What a scan ends at.
enum class ScanEnd {
  kLastRecord,  ///< the end of the last record
  kFile,        ///< the end of a file that may be cut off
  kUnknown      ///< something behind the last record
};

/// Finds the records in a scan, in front of damaged ones and behind. `count` is how many there should be, or -1.
FoundRecords FindRecords(RecordScan& scan, int count, ScanEnd end);

}  // namespace dtsdb::tools

/// \file
/// The bytes of an archive in larger pieces than a field.
#pragma once

#include <QIODevice>
#include <cstddef>
#include <span>
#include <vector>

#include "model/basic_types.h"
#include "model/field_runs.h"
#include "model/qarchive.h"

namespace dtsdb::internal {

/// Gathers what goes into an archive. All of it is there when this is destroyed.
class ArchiveWriter {
 public:
  /// Writes to `ar`, which must outlive it.
  explicit ArchiveWriter(QArchive& ar) : m_ar(ar) {}
  ArchiveWriter(const ArchiveWriter&) = delete;
  ArchiveWriter& operator=(const ArchiveWriter&) = delete;
  ~ArchiveWriter() { Flush(); }

  /// Adds numbers of `width` bytes, a text, or the fields of a record.
  void PutNumbers(const void* numbers, std::size_t width, std::size_t count) {
    CopyTurned(Room(width * count), numbers, width, count);
  }
  /// Adds a text, or the fields of a record.
  void PutText(const QString& text);
  void PutRecord(const void* record, std::span<const FieldRun> runs);

 private:
  static constexpr std::size_t kRoom = 256 * 1024;

  /// Where the next `n` bytes go.
  char* Room(std::size_t n);
  void Flush();

  QArchive& m_ar;
  std::vector<char> m_bytes = std::vector<char>(kRoom);
  std::size_t m_used = 0;
};

/// Reads an archive of a device with positions ahead, from where the device stands.
///
/// What can't be read here, since the device ends or the bytes make no sense, must be read from the archive itself,
/// which then refuses it: LeaveAt sets the device to where that begins.
class ArchiveReader {
 public:
  /// Reads `device`, which must outlive it.
  explicit ArchiveReader(QIODevice& device) : m_device(device), m_base(device.pos()) {}

  /// The place of what comes next, as a position of the device.
  qint64 Position() const { return m_base + static_cast<qint64>(m_at); }

  /// Takes the next `n` bytes; null when there aren't as many. They hold until the next call.
  const char* Take(std::size_t n) {
    if (m_bytes.size() - m_at < n && !Refill(n)) return nullptr;
    const char* const bytes = m_bytes.data() + m_at;
    m_at += n;
    return bytes;
  }
  bool TakeNumbers(void* numbers, std::size_t width, std::size_t count);
  bool TakeText(QString& text);
  bool TakeRecord(void* record, std::span<const FieldRun> runs);

  /// Sets the device to `position`.
  void LeaveAt(qint64 position) { m_device.seek(position); }

 private:
  static constexpr std::size_t kAhead = 64 * 1024;

  bool Refill(std::size_t n);

  QIODevice& m_device;
  qint64 m_base;  // position of the first of m_bytes
  std::vector<char> m_bytes;
  std::size_t m_at = 0;
};

}  // namespace dtsdb::internal

#include "model/archive_bytes.h"

#include <QString>
#include <algorithm>

namespace dtsdb::internal {
namespace {

constexpr u32 kNullText = 0xFFFFFFFF;
constexpr std::size_t kUnit = 2;  // bytes of a character

}  // namespace

// ArchiveWriter

char* ArchiveWriter::Room(std::size_t n) {
  if (m_bytes.size() - m_used < n) {
    Flush();
    if (m_bytes.size() < n) m_bytes.resize(n);
  }
  char* const room = m_bytes.data() + m_used;
  m_used += n;
  return room;
}

void ArchiveWriter::Flush() {
  if (m_used > 0) m_ar.writeRawData(m_bytes.data(), static_cast<int>(m_used));
  m_used = 0;
}

void ArchiveWriter::PutText(const QString& text) {
  const auto size = static_cast<std::size_t>(text.size());
  const u32 bytes = text.isNull() ? kNullText : static_cast<u32>(size * kUnit);
  PutNumbers(&bytes, sizeof bytes, 1);
  PutNumbers(text.constData(), kUnit, size);
}

void ArchiveWriter::PutRecord(const void* record, std::span<const FieldRun> runs) {
  const auto* const begin = static_cast<const std::byte*>(record);
  for (const FieldRun& run : runs) {
    if (run.width == 0) {
      PutText(*reinterpret_cast<const QString*>(begin + run.offset));
    } else {
      PutNumbers(begin + run.offset, run.width, run.count);
    }
  }
}

// ArchiveReader

/// Reads on until `n` bytes are there. What a damaged length asks for beyond the device's end takes no memory.
bool ArchiveReader::Refill(std::size_t n) {
  if (static_cast<qint64>(n) > m_device.size() - Position()) return false;
  m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_at));
  m_base += static_cast<qint64>(m_at);
  m_at = 0;
  const std::size_t before = m_bytes.size();
  m_bytes.resize(std::max(n, before + kAhead));
  const qint64 read = m_device.read(m_bytes.data() + before, static_cast<qint64>(m_bytes.size() - before));
  m_bytes.resize(before + static_cast<std::size_t>(std::max<qint64>(read, 0)));
  return m_bytes.size() >= n;
}

bool ArchiveReader::TakeNumbers(void* numbers, std::size_t width, std::size_t count) {
  const char* const bytes = Take(width * count);
  if (bytes == nullptr) return false;
  CopyTurned(numbers, bytes, width, count);
  return true;
}

bool ArchiveReader::TakeText(QString& text) {
  u32 bytes = 0;
  if (!TakeNumbers(&bytes, sizeof bytes, 1)) return false;
  if (bytes == kNullText) {
    text = QString();
    return true;
  }
  if (bytes % kUnit != 0) return false;
  const char* const units = Take(bytes);
  if (units == nullptr) return false;
  text = QString(static_cast<qsizetype>(bytes / kUnit), Qt::Uninitialized);  // empty, not null, for none
  CopyTurned(text.data(), units, kUnit, bytes / kUnit);
  return true;
}

bool ArchiveReader::TakeRecord(void* record, std::span<const FieldRun> runs) {
  auto* const begin = static_cast<std::byte*>(record);
  for (const FieldRun& run : runs) {
    const bool taken = run.width == 0 ? TakeText(*reinterpret_cast<QString*>(begin + run.offset))
                                      : TakeNumbers(begin + run.offset, run.width, run.count);
    if (!taken) return false;
  }
  return true;
}

}  // namespace dtsdb::internal

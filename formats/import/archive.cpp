#include "formats/import/archive.h"

#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>

#include <algorithm>
#include <memory>

#include "formats/failure.h"
#include "formats/files.h"
#include "formats/text_layout.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

// XML packs to about a tenth; a large grid has some dozen files of some hundred megabytes.
constexpr int kMostEntries = 10'000;
constexpr qint64 kFreeBytes = qint64{64} << 20;  // so much may expand from anything
constexpr qint64 kDensest = 200;                 // bytes out of one

struct CloseArchive {
  void operator()(archive* opened) const { archive_read_free(opened); }
};
using ArchiveHandle = std::unique_ptr<archive, CloseArchive>;

/// How much an archive has expanded to so far, out of how much of it.
class Budget {
 public:
  Budget(archive* opened, qint64 size, qint64 most, const std::function<void(std::uint64_t)>& count)
      : m_archive(opened), m_size(size), m_most(most), m_count(count) {}

  /// False when the archive has expanded to more than it may.
  bool Count(qint64 bytes) {
    m_bytes += bytes;
    CountPacked();
    return m_bytes <= m_most && (m_bytes <= kFreeBytes || m_bytes / kDensest <= m_size);
  }

 private:
  /// Reports what has been read of the archive since the last time.
  void CountPacked() {
    constexpr int kOfTheFile = -1;
    const la_int64_t packed = archive_filter_bytes(m_archive, kOfTheFile);
    if (packed > m_packed) m_count(static_cast<std::uint64_t>(packed - m_packed));
    m_packed = std::max(m_packed, packed);
  }

  archive* m_archive;
  qint64 m_size;
  qint64 m_most;
  const std::function<void(std::uint64_t)>& m_count;
  qint64 m_bytes = 0;
  la_int64_t m_packed = 0;
};

/// What went wrong last with an archive.
std::string FaultOf(archive* opened) {
  const char* const text = archive_error_string(opened);
  return OneLine(text == nullptr ? "it is damaged" : text);
}

/// What the entry at hand expands to. It ends early where the archive is at fault.
class EntryDevice : public QIODevice {
 public:
  EntryDevice(archive* opened, Budget& budget) : m_archive(opened), m_budget(budget) { open(QIODevice::ReadOnly); }

  /// What is wrong with the archive, empty for nothing.
  const std::string& Fault() const { return m_fault; }

  bool isSequential() const override { return true; }
  bool atEnd() const override { return m_isAtEnd && QIODevice::atEnd(); }

 protected:
  qint64 readData(char* data, qint64 size) override {
    const la_ssize_t count = archive_read_data(m_archive, data, static_cast<std::size_t>(size));
    if (count < 0) m_fault = FaultOf(m_archive);
    if (count > 0 && !m_budget.Count(count)) m_fault = "it expands to more than any grid";
    m_isAtEnd = count <= 0 || !m_fault.empty();
    return m_isAtEnd ? -1 : count;
  }
  qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

 private:
  archive* m_archive;
  Budget& m_budget;
  std::string m_fault;
  bool m_isAtEnd = false;
};

[[noreturn]] void RefuseArchive(const fs::path& path, const std::string& fault) {
  RefuseFile(path, "can't be read: " + fault);
}

struct FreeWriter {
  void operator()(archive* written) const { archive_write_free(written); }
};
struct FreeEntry {
  void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

la_ssize_t WriteTo(archive* /*written*/, void* device, const void* bytes, std::size_t size) {
  return static_cast<QIODevice*>(device)->write(static_cast<const char*>(bytes), static_cast<qint64>(size));
}

enum class Packing { kZip, kGzip };

ArchiveHandle Open(const fs::path& path, Packing packing) {
  ArchiveHandle opened(archive_read_new());
  if (!opened) throw std::bad_alloc();
  if (packing == Packing::kZip) {
    archive_read_support_format_zip(opened.get());
  } else {
    archive_read_support_filter_gzip(opened.get());
    archive_read_support_format_raw(opened.get());
  }
  constexpr std::size_t kBlock = std::size_t{64} * 1024;
  if (archive_read_open_filename(opened.get(), path.c_str(), kBlock) != ARCHIVE_OK)
    RefuseArchive(path, FaultOf(opened.get()));
  return opened;
}

/// Visits one entry. A fault of the archive comes before what its early end means for the entry.
void VisitEntry(const fs::path& path, EntryDevice& device, const std::function<void(QIODevice&)>& visit) {
  try {
    visit(device);
  } catch (const Failure&) {
    if (device.Fault().empty()) throw;
  }
  if (!device.Fault().empty()) RefuseArchive(path, device.Fault());
}

}  // namespace

void ForEachEntry(const fs::path& path, const std::function<void(QIODevice&, const std::string&)>& visit,
                  const std::function<void(std::uint64_t)>& count, qint64 most) {
  const ArchiveHandle opened = Open(path, Packing::kZip);
  Budget budget(opened.get(), static_cast<qint64>(fs::file_size(path)), most, count);
  for (int entries = 1;; ++entries) {
    archive_entry* entry = nullptr;
    const int result = archive_read_next_header(opened.get(), &entry);
    if (result == ARCHIVE_EOF) return;
    if (result < ARCHIVE_WARN) RefuseArchive(path, FaultOf(opened.get()));
    if (entries > kMostEntries) RefuseArchive(path, fmt::format("it has more than {} files", kMostEntries));
    if (archive_entry_filetype(entry) != AE_IFREG) continue;
    const char* const inner = archive_entry_pathname(entry);
    const std::string name = fmt::format("{}: {}", path.string(), OneLine(inner == nullptr ? "?" : inner));
    EntryDevice device(opened.get(), budget);
    VisitEntry(path, device, [&](QIODevice& content) { visit(content, name); });
  }
}

void ReadPacked(const fs::path& file, const std::function<void(QIODevice&)>& visit,
                const std::function<void(std::uint64_t)>& count, qint64 most) {
  const ArchiveHandle opened = Open(file, Packing::kGzip);
  Budget budget(opened.get(), static_cast<qint64>(fs::file_size(file)), most, count);
  archive_entry* entry = nullptr;
  if (archive_read_next_header(opened.get(), &entry) < ARCHIVE_WARN) RefuseArchive(file, FaultOf(opened.get()));
  EntryDevice device(opened.get(), budget);
  VisitEntry(file, device, visit);
}

bool Pack(const QByteArray& text, QIODevice& output) {
  const std::unique_ptr<archive, FreeWriter> written(archive_write_new());
  const std::unique_ptr<archive_entry, FreeEntry> entry(archive_entry_new());
  if (!written || !entry) throw std::bad_alloc();
  archive_write_add_filter_gzip(written.get());
  archive_write_set_format_raw(written.get());
  archive_write_set_filter_option(written.get(), "gzip", "timestamp", nullptr);
  archive_write_set_bytes_in_last_block(written.get(), 1);  // nothing fills the last block up
  archive_entry_set_filetype(entry.get(), AE_IFREG);
  archive_entry_set_pathname(entry.get(), "packed");
  const auto size = static_cast<la_ssize_t>(text.size());
  return archive_write_open(written.get(), &output, nullptr, WriteTo, nullptr) == ARCHIVE_OK &&
         archive_write_header(written.get(), entry.get()) == ARCHIVE_OK &&
         archive_write_data(written.get(), text.constData(), static_cast<std::size_t>(size)) == size &&
         archive_write_close(written.get()) == ARCHIVE_OK;
}

}  // namespace dtsdb::tools

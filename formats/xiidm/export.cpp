#include "formats/xiidm/export.h"

#include <archive.h>
#include <archive_entry.h>

#include <QBuffer>
#include <QSaveFile>
#include <memory>

#include "formats/files.h"

namespace dtsdb::tools::xiidm {
namespace {

struct FreeArchive {
  void operator()(archive* written) const { archive_write_free(written); }
};
struct FreeEntry {
  void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

la_ssize_t WriteTo(archive* /*written*/, void* device, const void* bytes, std::size_t size) {
  return static_cast<QIODevice*>(device)->write(static_cast<const char*>(bytes), static_cast<qint64>(size));
}

/// Writes `text` packed by gzip, without the time, so that the same text gives the same bytes. False when it fails.
bool WritePacked(const QByteArray& text, QIODevice& output) {
  const std::unique_ptr<archive, FreeArchive> written(archive_write_new());
  const std::unique_ptr<archive_entry, FreeEntry> entry(archive_entry_new());
  if (!written || !entry) throw std::bad_alloc();
  archive_write_add_filter_gzip(written.get());
  archive_write_set_format_raw(written.get());
  archive_write_set_filter_option(written.get(), "gzip", "timestamp", nullptr);
  archive_entry_set_filetype(entry.get(), AE_IFREG);
  archive_entry_set_pathname(entry.get(), "network.xiidm");
  const auto size = static_cast<la_ssize_t>(text.size());
  return archive_write_open(written.get(), &output, nullptr, WriteTo, nullptr) == ARCHIVE_OK &&
         archive_write_header(written.get(), entry.get()) == ARCHIVE_OK &&
         archive_write_data(written.get(), text.constData(), static_cast<std::size_t>(size)) == size &&
         archive_write_close(written.get()) == ARCHIVE_OK;
}

}  // namespace

void Export(DTSDB& model, const std::string& path) {
  SettleTables(model);
  QBuffer text;
  text.open(QIODevice::WriteOnly);
  WriteNetwork(model, text);
  QSaveFile file(QtPath(path));
  const bool isOpen = file.open(QIODevice::WriteOnly);
  const bool isPacked = path.ends_with(".gz");
  const bool isWritten = isOpen && (isPacked ? WritePacked(text.data(), file) : file.write(text.data()) == text.size());
  if (!isWritten || !file.commit()) RefuseFile(path, "can't be written: " + file.errorString().toStdString());
}

}  // namespace dtsdb::tools::xiidm

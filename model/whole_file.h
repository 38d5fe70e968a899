/// \file
/// Files that are there whole or not at all, whatever ends the program, the power included.
#pragma once

#include <QFile>
#include <QString>
#include <memory>

namespace dtsdb {

namespace internal {
class NewFile;
}

/// Writes a file anew. It takes its place only when all of it is on the disk: until then, and when that fails, the old
/// one stands there unchanged. A link leads to the file that is replaced; permissions stay, and the owner where
/// the program may give files away. A device or a pipe holds nothing to keep and is written directly.
///
///     WholeFile file(path);
///     if (!file.Open() || !WriteAll(file.Device()) || !file.Finish()) return file.Error();
///
/// Until Finish the new file has no name, so a program that is ended leaves nothing. Where the file system has no files
/// without a name, and for an instant in Finish, it stands beside the old one as .NAME.dtsdb-XXXXXX; such a leftover of
/// a killed program is removed by the next one that writes a file in the same folder.
class WholeFile {
 public:
  /// For the file `path`, which needs not be there; nothing is done yet.
  explicit WholeFile(const QString& path);
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;
  /// Forgets what has been written, unless Finish has been called.
  ~WholeFile();

  /// False when the file can't be written.
  bool Open();
  /// What takes the bytes, once it is open.
  QFileDevice& Device() { return m_file; }
  /// Puts the file in its place. False when not all could be written, or when the disk may not have all of it; from then
  /// on always.
  bool Finish();
  /// Why the last call returned false: the system's words, in one line.
  QString Error() const { return m_error.isEmpty() ? m_file.errorString() : m_error; }

 private:
  /// Keeps in mind that a write has failed: QFile forgets it with the next one.
  class Bytes : public QFile {
   public:
    bool HasFailed() const { return m_hasFailed; }

   protected:
    qint64 writeData(const char* data, qint64 size) override;

   private:
    bool m_hasFailed = false;
  };

  bool Fail(int error);
  bool Fail(const QString& why);

  QString m_path;
  std::unique_ptr<internal::NewFile> m_new;  ///< none for a device or a pipe
  Bytes m_file;
  QString m_error;
};

}  // namespace dtsdb

/// \file
/// Files that are there whole or not at all, whatever ends the program, the power included.
#pragma once

#include <QFile>
#include <QString>
#include <string>
#include <string_view>

namespace dtsdb {

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
  /// Puts the file in its place. False when not all could be written, or when the disk may not have all of it.
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

  bool OpenBeside(bool isThere);
  bool TakePlace();
  bool GiveName();
  bool Fail(int error);
  bool Fail(const QString& why);

  QString m_path;
  std::string m_target;     ///< the path without links; empty for a device or a pipe
  std::string m_temporary;  ///< the path that the new file has at present; empty for none
  Bytes m_file;
  QString m_error;
};

/// A name for a file or folder that is being written: FRONTdtsdb- and six hexadecimal digits. FRONT is empty or begins
/// and ends with a dot. It is hardly in use.
std::string NewTemporaryName(const std::string& front);

/// Whether NewTemporaryName returns such names.
bool IsTemporaryName(std::string_view name);

}  // namespace dtsdb

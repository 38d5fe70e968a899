#include "formats/xiidm/export.h"

#include <QBuffer>
#include <QSaveFile>

#include "formats/files.h"
#include "formats/import/archive.h"
#include "formats/xiidm/import.h"

namespace dtsdb::tools::xiidm {

void Export(DTSDB& model, const std::string& path) {
  if (IsOfOtherProgram(path)) {
    RefuseFile(path, "is an XIIDM file of another program, with more in it than our tables hold; name another OUT");
  }
  SettleTables(model);
  QBuffer text;
  text.open(QIODevice::WriteOnly);
  WriteNetwork(model, text);
  QSaveFile file(QtPath(path));
  const bool isOpen = file.open(QIODevice::WriteOnly);
  const bool isPacked = path.ends_with(".gz");
  const bool isWritten = isOpen && (isPacked ? Pack(text.data(), file) : file.write(text.data()) == text.size());
  if (!isWritten || !file.commit()) RefuseFile(path, "can't be written: " + file.errorString().toStdString());
}

}  // namespace dtsdb::tools::xiidm

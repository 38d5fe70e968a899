#include "formats/xiidm/export.h"

#include <QBuffer>

#include "formats/files.h"
#include "formats/import/archive.h"
#include "formats/xiidm/import.h"
#include "model/whole_file.h"

namespace dtsdb::tools::xiidm {

void Export(DTSDB& model, const std::string& path) {
  if (IsOfOtherProgram(path)) {
    RefuseFile(path, "is an XIIDM file of another program, with more in it than our tables hold; name another OUT");
  }
  SettleTables(model);
  QBuffer text;
  text.open(QIODevice::WriteOnly);
  WriteNetwork(model, text);
  WholeFile file(QtPath(path));
  const auto write = [&] {
    return path.ends_with(".gz") ? Pack(text.data(), file.Device()) : file.Device().write(text.data()) == text.size();
  };
  if (!file.Open() || !write() || !file.Finish()) RefuseFile(path, "can't be written: " + file.Error().toStdString());
}

}  // namespace dtsdb::tools::xiidm

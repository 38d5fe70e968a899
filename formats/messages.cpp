#include "formats/messages.h"

#include <QString>
#include <cstdio>

#include "formats/text_layout.h"
#include "model/text.h"

namespace dtsdb::tools {

void WriteMessage(const std::string& line) {
  const QByteArray bytes = TerminalBytes(QString::fromStdString("dtsdb: " + OneLine(line) + "\n"));
  std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
}

}  // namespace dtsdb::tools

#include "formats/import/guarded_device.h"

#include <algorithm>

namespace dtsdb::tools {

GuardedDevice::GuardedDevice(QIODevice& source) : m_source(source) {
  open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 GuardedDevice::readData(char* data, qint64 size) {
  if (m_left <= 0) {
    m_isTooLong = true;
    return -1;
  }
  const qint64 count = m_source.read(data, std::min(size, m_left));
  if (count > 0) m_left -= count;
  return count;
}

qint64 GuardedDevice::writeData(const char* /*data*/, qint64 /*size*/) { return -1; }

}  // namespace dtsdb::tools

#include "relay/state_hash.h"

#include <QByteArrayView>
#include <QCryptographicHash>
#include <string>

#include "relay/bytes.h"

namespace dtsdb::relay {

StateHash& StateHash::operator+=(const StateHash& other) {
  low += other.low;
  high += other.high + (low < other.low ? 1 : 0);
  return *this;
}

StateHash& StateHash::operator-=(const StateHash& other) {
  high -= other.high + (low < other.low ? 1 : 0);
  low -= other.low;
  return *this;
}

StateHash HashOf(std::string_view table, oid_t number, std::string_view row) {
  std::string head;
  ByteWriter writer(head);
  writer.PutCounted<std::uint8_t>(table);
  writer.Put(std::uint64_t{number});
  thread_local QCryptographicHash hash(QCryptographicHash::Blake2b_160);
  hash.reset();
  hash.addData(QByteArrayView(head.data(), static_cast<qsizetype>(head.size())));
  hash.addData(QByteArrayView(row.data(), static_cast<qsizetype>(row.size())));
  const QByteArray digest = hash.result();
  ByteReader reader(std::string_view(digest.constData(), static_cast<std::size_t>(digest.size())));
  StateHash result;
  result.low = reader.Get<std::uint64_t>();
  result.high = reader.Get<std::uint64_t>();
  return result;
}

}  // namespace dtsdb::relay

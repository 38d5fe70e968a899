#include "model/records.h"

#include "model/qarchive.h"

namespace dtsdb {
namespace {

template <class T>
void SerializeFields(T& record, QArchive& ar) {
  const bool storing = ar.IsStoring();
  T::ForEachField([&](const auto& field) {
    auto& value = record.*field.member;
    if (storing) {
      ar << value;
      return;
    }
    if (ar.IsRefused()) return;
    ar >> value;
    if (ar.status() != QDataStream::Ok) {
      ar.Refuse(QStringLiteral("field %1 can't be read").arg(QLatin1String(field.name)));
    }
  });
}

}  // namespace

#define DTSDB_SERIALIZE(T, table, key, meaning) \
  void T::Serialize(QArchive& ar) { SerializeFields(*this, ar); }
DTSDB_TABLES(DTSDB_SERIALIZE)
#undef DTSDB_SERIALIZE

}  // namespace dtsdb

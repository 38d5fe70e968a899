#include "model/internal/serialize_fields.h"

namespace dtsdb::internal {

void SerializeFields(void* record, std::span<const FieldInfo> fields, QArchive& ar) {
  if (ar.IsStoring()) {
    for (const FieldInfo& field : fields) VisitValue(field, record, [&ar](const auto& value) { ar << value; });
    return;
  }
  for (const FieldInfo& field : fields) {
    if (ar.IsRefused()) return;
    VisitValue(field, record, [&ar](auto& value) { ar >> value; });
    if (ar.status() != QDataStream::Ok) {
      ar.Refuse(QStringLiteral("field %1 can't be read").arg(QLatin1String(field.name)));
    }
  }
}

}  // namespace dtsdb::internal

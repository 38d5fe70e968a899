#include <QFile>

#include "include/internal/standard_streams.h"
#include "model/dtsdb.h"
#include "model/objectfile.h"
#include "model/qarchive.h"
#include "model/table_image.h"
#include "model/text.h"
#include "model/whole_file.h"

namespace dtsdb {
namespace {

const QString kCanNotOpen = QStringLiteral("can not open file.\n");

/// Exchanges the contents of all tables: the tables themselves stay where NMD and TP know them.
void TakeContents(DTSDB& into, DTSDB& from) {
  ForEachRecordClass([&]<class T> { TableImage<T>::Exchange(TableOf<T>(into), TableOf<T>(from)); });
}

void Store(DTSDB& database, QFileDevice& file) {
  QArchive ar(&file, false);
  database.Serialize(ar);
}

}  // namespace

void DTSDB::Serialize(QArchive& ar) {
  if (ar.IsStoring()) return ForEachTable(*this, [&ar](auto& table) { table.Serialize(ar); });
  DTSDB loaded;
  ForEachTable(loaded, [&ar](auto& table) {
    if (!ar.IsRefused()) table.Serialize(ar);
  });
  if (!ar.IsRefused()) TakeContents(*this, loaded);
}

QString ReadObjectFile(DTSDB& database, const QString& fileName) {
  const internal::StandardStreamsKept kept;
  QFile file(fileName);
  if (!file.open(QIODevice::ReadOnly)) return kCanNotOpen;
  QArchive ar(&file, true);
  DTSDB loaded;
  loaded.Serialize(ar);
  if (!ar.IsRefused() && ar.BytesLeft() != 0) {
    ar.SetPlace("ZBR2", -1);
    ar.Refuse(QStringLiteral("%1 bytes stand behind the last table").arg(ar.BytesLeft()));
  }
  if (ar.IsRefused()) return QStringLiteral("not a sound object file, %1.\n").arg(ar.Refusal());
  TakeContents(database, loaded);
  return QString();
}

QString WriteObjectFile(DTSDB& database, const QString& fileName) {
  if (fileName.isEmpty()) return kCanNotOpen;
  const internal::StandardStreamsKept kept;
  WholeFile file(fileName);
  if (!file.Open()) return kCanNotOpen;
  Store(database, file.Device());  // a failure stays with the device
  return file.Finish() ? QString() : QStringLiteral("can not write file: %1.\n").arg(file.Error());
}

bool DTSDB::ReadObject(const QString& fileName) {
  const QString failure = ReadObjectFile(*this, fileName);
  PrintText(failure);
  return failure.isNull();
}

bool DTSDB::WriteObject(const QString& fileName) {
  const QString failure = WriteObjectFile(*this, fileName);
  PrintText(failure);
  return failure.isNull();
}

}  // namespace dtsdb

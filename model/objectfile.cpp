#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include "include/internal/standard_streams.h"
#include "model/dtsdb.h"
#include "model/objectfile.h"
#include "model/qarchive.h"
#include "model/table_image.h"
#include "model/text.h"

namespace dtsdb {
namespace {

const QString kCanNotOpen = QStringLiteral("can not open file.\n");

/// Exchanges the contents of all tables: the tables themselves stay where NMD and TP know them.
void TakeContents(DTSDB& into, DTSDB& from) {
  ForEachRecordClass([&]<class T> { TableImage<T>::Exchange(TableOf<T>(into), TableOf<T>(from)); });
}

/// A device or a pipe: it holds nothing to keep, and a file must not take its place.
bool IsSpecial(const QString& fileName) {
  const QFileInfo target(fileName);
  return target.exists() && !target.isFile() && !target.isDir();
}

bool Store(DTSDB& database, QFileDevice& file) {
  QArchive ar(&file, false);
  database.Serialize(ar);
  return ar.status() == QDataStream::Ok && file.flush();
}

QString CanNotWrite(const QFileDevice& file) {
  return QStringLiteral("can not write file: %1.\n").arg(file.errorString());
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
  if (IsSpecial(fileName)) {
    QFile device(fileName);
    if (!device.open(QIODevice::WriteOnly)) return kCanNotOpen;
    return Store(database, device) ? QString() : CanNotWrite(device);
  }
  QSaveFile file(fileName);
  if (!file.open(QIODevice::WriteOnly)) return kCanNotOpen;
  return Store(database, file) && file.commit() ? QString() : CanNotWrite(file);
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

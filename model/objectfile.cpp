#include <QFile>
#include <QSaveFile>

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
#define DTSDB_SWAP(T, table, key, meaning) TableImage<T>::Exchange(*into.table, *from.table);
  DTSDB_TABLES(DTSDB_SWAP)
#undef DTSDB_SWAP
}

}  // namespace

void DTSDB::Serialize(QArchive& ar) {
  ForEachTable(*this, [&ar](auto& table) {
    if (ar.IsStoring() || !ar.IsRefused()) table.Serialize(ar);
  });
}

QString ReadObjectFile(DTSDB& database, const QString& fileName) {
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
  QSaveFile file(fileName);
  if (!file.open(QIODevice::WriteOnly)) return kCanNotOpen;
  QArchive ar(&file, false);
  database.Serialize(ar);
  if (ar.status() != QDataStream::Ok || !file.commit()) {
    return QStringLiteral("can not write file: %1.\n").arg(file.errorString());
  }
  return QString();
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

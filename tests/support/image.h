/// \file
/// Tables and models as the bytes of an object file, and back.
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QString>

#include "model/qarchive.h"

namespace dtsdb::test {

/// The image of one record, of one table or of a whole model.
template <class Stored>
QByteArray ImageOf(Stored& stored) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QArchive ar(&buffer, false);
  stored.Serialize(ar);
  return buffer.data();
}

/// Loads an image; returns what was refused, null when it was taken.
template <class Loaded>
QString LoadImage(Loaded& loaded, QByteArray image) {
  QBuffer buffer(&image);
  buffer.open(QIODevice::ReadOnly);
  QArchive ar(&buffer, true);
  loaded.Serialize(ar);
  return ar.Refusal();
}

}  // namespace dtsdb::test

/// \file
/// The stream of the object file.
#pragma once

#include <QDataStream>
#include <QString>

namespace dtsdb {

/// A QDataStream that knows which way it runs, so that one routine both stores and loads.
///
/// The encoding is that of version 6 of the stream format, big-endian, which is the object file's. The device is
/// the caller's and must be open. What is loaded and makes no sense is refused: the first refusal is kept as
/// text, and everything read from then on is void.
class QArchive : public QDataStream {
 public:
  /// Loads from or stores to `pDevice`, which must be open and outlive it.
  QArchive(QIODevice* pDevice, bool bLoading);
  virtual ~QArchive();

  /// Whether it stores, else it loads.
  bool IsStoring() const { return !m_bLoading; }

  /// Sets where the reading stands, for the text of a refusal. `table` must outlive the archive; `row` -1 is the
  /// head of the table's image.
  void SetPlace(const char* table, int row);
  /// Refuses the archive: `what` is wrong here. Only the first call has an effect.
  void Refuse(const QString& what);
  bool IsRefused() const { return !m_refusal.isNull(); }
  /// What was refused, with table, row and byte offset; null when nothing was.
  const QString& Refusal() const { return m_refusal; }
  /// Bytes between here and the end of the device.
  qint64 BytesLeft() const;
  /// True when the device has positions, so that one can read ahead of the archive and come back.
  bool HasPositions() const;

 private:
  QIODevice* m_pDevice;
  bool m_bLoading;
  const char* m_table = "";
  int m_row = -1;
  QString m_refusal;
};

}  // namespace dtsdb

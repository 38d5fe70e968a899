#include "model/qarchive.h"

#include <QIODevice>

namespace dtsdb {

QArchive::QArchive(QIODevice* pDevice, bool bLoading) : QDataStream(pDevice), m_pDevice(pDevice), m_bLoading(bLoading) {
  setVersion(QDataStream::Qt_3_3);  // the format on disk; a later version would store an f32 in 8 bytes
}

QArchive::~QArchive() = default;

void QArchive::SetPlace(const char* table, int row) {
  m_table = table;
  m_row = row;
}

void QArchive::Refuse(const QString& what) {
  if (IsRefused()) return;
  setStatus(QDataStream::ReadCorruptData);
  const QString place = m_row < 0 ? QString() : QStringLiteral(", row %1").arg(m_row);
  m_refusal =
      QStringLiteral("table %1%2, byte %3: %4")
          .arg(QLatin1String(m_table), place, QString::number(m_pDevice != nullptr ? m_pDevice->pos() : 0), what);
}

qint64 QArchive::BytesLeft() const { return m_pDevice != nullptr ? m_pDevice->size() - m_pDevice->pos() : 0; }

bool QArchive::HasPositions() const { return m_pDevice != nullptr && !m_pDevice->isSequential(); }

}  // namespace dtsdb

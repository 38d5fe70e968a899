/// \file
/// Input that ends where a file from a stranger would cost more than a grid can.
#pragma once

#include <QIODevice>

namespace dtsdb::tools {

/// Passes on what another device gives, `source`, which must live as long as this and be open. The XML reader keeps a
/// tag or text in memory until its end: input ends where one is longer than any that a grid needs.
class GuardedDevice : public QIODevice {
 public:
  /// The longest tag or text, in bytes. Tests of attributes that stand twice take the square of a tag's length.
  static constexpr qint64 kLongest = 64 * 1024;

  explicit GuardedDevice(QIODevice& source);

  /// A tag or text has been read: the next may be as long again.
  void Renew() { m_left = kLongest; }
  /// True when input was ended because a tag or text is too long.
  bool IsTooLong() const { return m_isTooLong; }

  bool isSequential() const override { return true; }
  bool atEnd() const override { return m_isTooLong || m_source.atEnd(); }

 protected:
  qint64 readData(char* data, qint64 size) override;
  qint64 writeData(const char* data, qint64 size) override;

 private:
  QIODevice& m_source;
  qint64 m_left = kLongest;
  bool m_isTooLong = false;
};

}  // namespace dtsdb::tools

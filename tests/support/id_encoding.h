/// \file
/// Another encoding of identities, for a while.
#pragma once

#include <QByteArray>

#include "model/text.h"

namespace dtsdb::test {

/// The encoding of identities in this process for as long as this lives.
class EncodingInEffect {
 public:
  explicit EncodingInEffect(IdEncoding encoding) : m_before(CurrentIdEncoding()) { SetIdEncoding(encoding); }
  EncodingInEffect(const EncodingInEffect&) = delete;
  EncodingInEffect& operator=(const EncodingInEffect&) = delete;
  ~EncodingInEffect() { SetIdEncoding(m_before); }

 private:
  IdEncoding m_before;
};

/// The value of DTSDB_ENCODING for the programs that are started as long as this lives.
class EncodingVariable {
 public:
  explicit EncodingVariable(const char* value) { qputenv(kName, value); }
  EncodingVariable(const EncodingVariable&) = delete;
  EncodingVariable& operator=(const EncodingVariable&) = delete;
  ~EncodingVariable() { qunsetenv(kName); }

 private:
  static constexpr const char* kName = "DTSDB_ENCODING";
};

}  // namespace dtsdb::test

/// \file
/// What the rows of switches have in common, whatever they are imported from.
#pragma once

#include <QString>

#include "model/record_bits.h"
#include "model/text.h"

namespace dtsdb::tools {

/// CB `flags` of a breaker, or else of a disconnector.
inline u32 TypeOfSwitch(bool isBreaker) { return isBreaker ? CB_BREAKER : CB_DISCONNECTOR; }

/// The identity of the zero-impedance branch on a breaker, of whose identity `breaker` is the real text. None begins
/// another's: "|Z" ends each, and a "|" in the breaker's own stands twice.
inline QString ZeroImpedanceId(const QString& breaker) {
  QString text = breaker;
  text.replace(u'|', QStringLiteral("||"));
  return IdFromText(text + QStringLiteral("|Z")).value_or(QString());
}

}  // namespace dtsdb::tools

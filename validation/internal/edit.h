/// \file
/// What the parts of the editing have in common: the model and the reason of a refusal.
#pragma once

#include <QString>

#include "model/dtsdb.h"
#include "validation/internal/edit_reasons.h"
#include "validation/internal/hierarchy.h"
#include "validation/internal/last_error.h"
#include "validation/internal/messages.h"

namespace dtsdb::internal {

/// Base of the parts: reads the model by names and sets the last error. Neither is owned.
class Edit {
 protected:
  Edit(DTSDB& model, LastError& lastError) : m_model(model), m_lastError(lastError) {}
  ~Edit() = default;
  Edit(const Edit&) = delete;
  Edit& operator=(const Edit&) = delete;

  /// The table of record class `T`.
  template <class T>
  tTable<T>& Table() const {
    return TableOf<T>(m_model);
  }
  /// The physical number of the record with identity `id`, -1 none.
  template <class T>
  int Number(const QString& id) const {
    return NumberOf<T>(m_model, id);
  }
  /// Sets the last error. Always returns false.
  bool Refuse(const Reason& reason) const { return m_lastError.Set(reason); }

  DTSDB& m_model;
  LastError& m_lastError;
};

}  // namespace dtsdb::internal

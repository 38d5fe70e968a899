/// \file
/// Keeps account of what becomes of the objects of a set.
#pragma once

#include <string>

#include "formats/cgmes/connections.h"
#include "formats/cgmes/set.h"
#include "formats/import/exceptions.h"
#include "formats/import_report.h"

namespace dtsdb::tools::cgmes {

/// The exceptions of an import, counted by class and reason. Refers to the set, which must live as long.
class Account {
 public:
  explicit Account(const ProfileSet& set) : m_set(set) {}

  /// An object is left out of the model.
  void LeaveOut(int object, const std::string& why) { Count(m_leftOut, object, why); }
  /// An object is in the model otherwise than others of its class.
  void Change(int object, const std::string& why) { Count(m_changed, object, why); }

  /// The whole account. Objects of classes that the import doesn't know are counted here.
  ImportReport Report(const Connections& connections) const;

 private:
  void Count(Exceptions& exceptions, int object, const std::string& why) const {
    exceptions.Count(ClassOf(object), why, [&] { return m_set.Describe(object); });
  }
  std::string ClassOf(int object) const;

  const ProfileSet& m_set;
  Exceptions m_leftOut;
  Exceptions m_changed;
};

}  // namespace dtsdb::tools::cgmes

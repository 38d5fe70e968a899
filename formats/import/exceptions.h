/// \file
/// Objects that an import leaves out or maps otherwise than others, counted.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "formats/import_report.h"

namespace dtsdb::tools {

/// Counts objects by class and reason.
class Exceptions {
 public:
  /// Counts an object of the class `type`. The first ones of a class and reason are named by what `describe` returns.
  template <class Describe>
  void Count(const std::string& type, const std::string& why, const Describe& describe) {
    ImportReport::Exception& exception = m_exceptions[{type, why}];
    exception.type = type;
    exception.why = why;
    if (exception.names.size() < kFirst) exception.names.push_back(describe());
    ++exception.count;
  }

  /// By class and reason.
  std::vector<ImportReport::Exception> List() const {
    std::vector<ImportReport::Exception> list;
    list.reserve(m_exceptions.size());
    for (const auto& [key, exception] : m_exceptions) list.push_back(exception);
    return list;
  }

 private:
  static constexpr std::size_t kFirst = 5;

  std::map<std::pair<std::string, std::string>, ImportReport::Exception> m_exceptions;
};

}  // namespace dtsdb::tools

/// \file
/// How what went wrong reaches Python.
#pragma once

#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "analysis/error.h"

namespace dtsdb::python {

/// An error on its way to Python, where it becomes an exception of dtsdb.errors: the class that goes with `code`.
class Raised : public std::runtime_error {
 public:
  Raised(std::string code, const std::string& message, std::string place)
      : std::runtime_error(message), m_code(std::move(code)), m_place(std::move(place)) {}
  explicit Raised(const analysis::Error& error) : Raised(analysis::CodeName(error.code), error.message, error.place) {}

  const std::string& Code() const { return m_code; }
  const std::string& Place() const { return m_place; }

 private:
  std::string m_code;
  std::string m_place;
};

/// A call that asks for something that isn't there to ask for.
[[noreturn]] inline void RefuseCall(const std::string& message, const std::string& place = "") {
  throw Raised(analysis::CodeName(analysis::ErrorCode::kUsage), message, place);
}

/// The value of a result; an error is thrown as Raised.
template <class T>
T Take(analysis::Result<T> result) {
  if (!result) throw Raised(result.error());
  if constexpr (!std::is_void_v<T>) return std::move(*result);
}

/// Lets Raised, and the failures of the formats, become Python's exceptions.
void RegisterErrors();

}  // namespace dtsdb::python

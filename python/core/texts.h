/// \file
/// Texts of the library as Python's.
#pragma once

#include <pybind11/pybind11.h>

#include <QString>
#include <string>

namespace dtsdb::python {

/// UTF-8 as str; bytes that are none become U+FFFD.
inline pybind11::str Text(const std::string& utf8) {
  PyObject* const text = PyUnicode_DecodeUTF8(utf8.data(), static_cast<Py_ssize_t>(utf8.size()), "replace");
  if (text == nullptr) throw pybind11::error_already_set();
  return pybind11::reinterpret_steal<pybind11::str>(text);
}

/// The real text of an identity as str.
pybind11::str IdText(const QString& id);

/// -1 for none as None.
inline pybind11::object NumberOrNone(int number) {
  return number < 0 ? pybind11::object(pybind11::none()) : pybind11::object(pybind11::int_(number));
}

}  // namespace dtsdb::python

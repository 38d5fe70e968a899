#include "python/core/errors.h"

#include <pybind11/pybind11.h>

#include <exception>

#include "formats/failure.h"
#include "python/core/texts.h"

namespace py = pybind11;

namespace dtsdb::python {
namespace {

using analysis::ErrorCode;

ErrorCode CodeOf(tools::ExitCode code) {
  if (code == tools::kExitFile) return ErrorCode::kFile;
  return code == tools::kExitFaults ? ErrorCode::kFaultyModel : ErrorCode::kUsage;
}

/// Sets Python's error. Where even that fails, the reason of this failure is set.
void Raise(const std::string& code, const std::string& message, const std::string& place) {
  try {
    const py::object error = py::module_::import("dtsdb.errors").attr("make")(Text(code), Text(message), Text(place));
    PyErr_SetObject(py::type::handle_of(error).ptr(), error.ptr());
  } catch (py::error_already_set& failure) {
    failure.restore();
  }
}

void Translate(std::exception_ptr thrown) {
  try {
    if (thrown) std::rethrow_exception(std::move(thrown));
  } catch (const Raised& error) {
    Raise(error.Code(), error.what(), error.Place());
  } catch (const tools::Failure& failure) {
    Raise(analysis::CodeName(CodeOf(failure.Code())), failure.what(), "");
  }
}

}  // namespace

void RegisterErrors() { py::register_local_exception_translator(Translate); }

}  // namespace dtsdb::python

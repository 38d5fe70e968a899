#include "python/core/report.h"

namespace py = pybind11;

namespace dtsdb::python {

void Report::Show(std::uint64_t done, std::uint64_t total) {
  constexpr std::chrono::milliseconds kPause{100};
  const bool isLast = done == total;
  if (m_raised || (isLast ? m_hasShownLast : Clock::now() < m_next)) return;
  m_hasShownLast = isLast;
  const py::gil_scoped_acquire locked;
  try {
    if (!m_callable.is_none()) m_callable(done, total);
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  } catch (...) {
    m_raised = std::current_exception();
  }
  m_next = Clock::now() + kPause;
}

}  // namespace dtsdb::python

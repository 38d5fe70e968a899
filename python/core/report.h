/// \file
/// Progress of long work, and the user's wish to end it, between the library and Python.
#pragma once

#include <pybind11/pybind11.h>

#include <chrono>
#include <cstdint>
#include <exception>

namespace dtsdb::python {

/// Hands the progress of work that runs without the interpreter's lock on to a Python callable: `callable(done,
/// total)`, at the first step, at the last and at most ten times a second. On these occasions it looks for signals too,
/// such as an interrupt from the keyboard. What Python raises is kept until the work has ended.
class Report {
 public:
  /// `callable` may be None. Made and destroyed with the interpreter's lock.
  explicit Report(pybind11::object callable) : m_callable(std::move(callable)) {}
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  /// To be called without the interpreter's lock, on the thread that has begun the work.
  void Show(std::uint64_t done, std::uint64_t total);

  /// True when something was raised: the work should end.
  bool HasRaised() const { return m_raised != nullptr; }

  /// Raises what was kept. With the interpreter's lock.
  void Rethrow() const {
    if (m_raised) std::rethrow_exception(m_raised);
  }

 private:
  using Clock = std::chrono::steady_clock;

  pybind11::object m_callable;
  std::exception_ptr m_raised;
  Clock::time_point m_next{};
  bool m_hasShownLast = false;
};

/// What `work()` returns, which runs without the interpreter's lock.
template <class Work>
auto WithoutLock(Work work) {
  const pybind11::gil_scoped_release released;
  return work();
}

/// The same for work that reports to `report`. What Python has raised meanwhile comes before the result and before an
/// error of the work, which may come from having been ended.
template <class Work>
auto WithoutLock(const Report& report, Work work) {
  const auto run = [&] {
    try {
      return WithoutLock(work);
    } catch (...) {
      report.Rethrow();
      throw;
    }
  };
  auto result = run();
  report.Rethrow();
  return result;
}

}  // namespace dtsdb::python

/// \file
/// Edits of a model that come into effect together or not at all.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "python/core/network.h"
#include "script/edit_run.h"

namespace dtsdb::python {

/// Edits a copy of a network's model, and puts it in the place of the model when it is good. One thread at a time;
/// others wait. Needs no lock of the interpreter.
class EditSession {
 public:
  /// Begins with a copy of the model, which is validated where it isn't good.
  explicit EditSession(std::shared_ptr<Network> network);

  /// Applies an edit, given as the words of an edit script's line. Throws Raised with the code of the message where it
  /// is refused; the copy can then only be thrown away.
  void Apply(const std::vector<std::string>& words);

  /// Validates the copy and lets it take effect. What the validation has found; where that has errors the network stays
  /// as it was.
  analysis::Validation Commit();

 private:
  void RequireOpen() const;

  const std::shared_ptr<Network> m_network;
  std::mutex m_mutex;
  std::optional<analysis::Model> m_model;  // nothing: the session has ended
  std::optional<tools::EditRun> m_run;     // on the model
  std::uint64_t m_changes = 0;
  std::string m_refused;  // what a refused edit was about
};

}  // namespace dtsdb::python

/// \file
/// The page as one file that can be handed on: it needs nothing beside it and refers to nothing outside.
#pragma once

#include <string>
#include <vector>

#include "page/documents.h"

namespace dtsdb::page {

/// Something that was switched, in words, and what became of it.
struct RunEvent {
  std::string text;
  std::string effect;
};

/// The runs of a switching, each with the pictures before and after it. They are written at once, so that the states
/// needn't be kept.
class RunHistory {
 public:
  /// Begins with the state that `documents` describe.
  explicit RunHistory(const Documents& documents, const analysis::Model& model);

  /// A run that has led from the state before to that of `model`, which stays as it is from now on.
  void Add(const std::string& title, const std::vector<RunEvent>& events, const analysis::Model& model);

  /// The documents on the state after the last run.
  const Documents& Now() const { return m_now; }
  /// All runs as a JSON array.
  std::string Json() const;

 private:
  Documents m_now;
  analysis::Model m_model;
  std::vector<std::string> m_runs;
};

/// The report on a model as an HTML document. The same documents give the same bytes.
std::string WriteReport(const Documents& documents);
/// The report on runs and on the model as they have left it.
std::string WriteReport(const RunHistory& runs);

}  // namespace dtsdb::page

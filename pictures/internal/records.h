/// \file
/// Records by name, for what reads pictures out of a model.
#pragma once

#include <QString>
#include <string>
#include <vector>

#include "formats/field_text.h"
#include "formats/nearest.h"
#include "formats/text_layout.h"
#include "model/dtsdb.h"
#include "pictures/station.h"

namespace dtsdb::pictures::internal {

inline constexpr const char* kLive = "live";

template <class T>
RecordName NameOf(const T& record) {
  return {T::kTableName, record.id, tools::IdText(record.id)};
}

/// The error of a record that the model doesn't have, with the nearest identities; `what` it would be.
template <class T>
analysis::Error Unknown(DTSDB& tables, const QString& id, const char* what) {
  std::vector<std::string> known;
  tTable<T>& table = TableOf<T>(tables);
  known.reserve(static_cast<std::size_t>(table.GetCount()));
  for (int i = 0; i < table.GetCount(); ++i) known.push_back(tools::IdText(table[i].id));
  const std::string text = tools::IdText(id);
  return {analysis::ErrorCode::kUnknownComponent,
          "the model has no " + std::string(what) + " " + tools::Quoted(text) + tools::DidYouMean(text, known), text};
}

}  // namespace dtsdb::pictures::internal

/// \file
/// Finding records by parts of their identity.
#pragma once

#include <string>
#include <vector>

#include "page/documents.h"

namespace dtsdb::page::internal {

/// The records of `all` whose identity is like `text`, at most 50: those that are called so, those that begin with it,
/// then those that contain it, each in the order of `all`; where there are none, those near to it. Upper and lower case
/// count as equal; an empty text finds none.
std::vector<Thing> FindLike(const std::vector<Thing>& all, const std::string& text);

}  // namespace dtsdb::page::internal

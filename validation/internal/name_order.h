/// \file
/// Names in the order of their texts.
#pragma once

#include <QStringView>
#include <span>
#include <vector>

namespace dtsdb::internal {

/// The places of `names`, which are all different, in the order of the texts by QString's operator<.
std::vector<int> NameOrder(std::span<const QStringView> names);

}  // namespace dtsdb::internal

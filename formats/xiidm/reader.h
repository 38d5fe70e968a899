/// \file
/// Reads an XIIDM file.
#pragma once

#include <QIODevice>
#include <string>

#include "formats/xiidm/network.h"

namespace dtsdb::tools::xiidm {

/// The most elements of a file. The largest grids have some hundred thousand.
inline constexpr int kMostElements = 20'000'000;

/// Reads the XIIDM text in `input`, which messages call `name`, in one pass. Extensions are passed over, but for slack
/// terminals.
///
/// Throws Failure, with file and line, for what is no XIIDM of version 1.0 to 1.17, no well-formed XML, has a document
/// type declaration (which might define entities), is nested deeper or has longer tags than any network, has more than
/// `most` elements, gives one id twice, or has a node number that is none.
Network ReadNetwork(QIODevice& input, const std::string& name, int most = kMostElements);

/// True for a tag (RootTag) that opens an XIIDM text, of whatever version.
bool IsNetworkTag(const QString& tag);

}  // namespace dtsdb::tools::xiidm

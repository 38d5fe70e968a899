/// \file
/// How a grid in an exchange format becomes a model.
#pragma once

namespace dtsdb::tools {

/// How a grid in an exchange format becomes a model.
struct ImportOptions {
  bool mergesRetained = false;  ///< a closed switch that keeps its nodes apart joins them like any other
  bool idsAreMrids = false;     ///< identities are the objects' mRIDs, not their names
  bool tiesAreUnits = false;    ///< equivalent injections become units, not loads
};

}  // namespace dtsdb::tools

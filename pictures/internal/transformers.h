/// \file
/// Which windings of a station make a transformer, and where it is drawn.
#pragma once

#include <string>
#include <vector>

#include "pictures/station.h"

namespace dtsdb::pictures::internal {

/// How a device is drawn.
enum class Role {
  kAlone,      ///< with its symbol, at the edge of its level
  kPrimary,    ///< a winding, with the symbol of its transformer
  kSecondary,  ///< a winding, as a wire to that symbol
};

/// An end of a winding.
struct WindingEnd {
  int level = -1;   ///< place in Station::levels
  int device = -1;  ///< place in StationLevel::devices
};

/// One winding between two levels, or three that meet in a star point.
struct Transformer {
  WindingEnd primary;              ///< on the highest of its levels
  std::vector<WindingEnd> others;  ///< one or two
  int star = -1;                   ///< the level that is the star point
};

/// The transformers of a station, and what follows from them for its levels.
struct TransformerPlan {
  explicit TransformerPlan(const Station& station);

  bool IsStar(int level) const { return isStar[static_cast<std::size_t>(level)]; }

  std::vector<Transformer> transformers;
  std::vector<bool> isStar;              ///< by level: it is a star point, drawn within its transformer
  std::vector<std::vector<Role>> roles;  ///< by level and device
  std::vector<std::vector<std::vector<std::string>>> names;  ///< likewise: lines of its name in the picture
  std::vector<std::vector<bool>> isUp;                       ///< likewise: it belongs above the bars of its level

 private:
  void FindTransformers(const Station& station);
  void NameDevices(const Station& station);
};

}  // namespace dtsdb::pictures::internal

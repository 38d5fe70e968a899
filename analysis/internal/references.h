/// \file
/// The references of live islands: those at the start, and those that a change leaves.
#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "model/dtsdb.h"
#include "topology/tp.h"

namespace dtsdb::analysis::internal {

/// What the reference of a live island is.
struct Reference {
  int unit = -1;  ///< number of the unit, -1 when it is a load or nothing
  int load = -1;  ///< number of the load that marks the reference section, likewise

  bool IsNothing() const { return unit < 0 && load < 0; }
};

/// The references of a model whose runs leave them alone.
class References {
 public:
  /// Takes the model, which must outlive it, with the references that its first run has chosen.
  explicit References(DTSDB& tables);

  /// That of live island `island` at the start; nothing for an unknown island.
  Reference AtStart(int island) const;

  /// True when live island `island`, by its present number, has the reference.
  bool Has(int island, const Reference& reference) const;

  /// Lets `tp` choose the references of all live islands as they now are, and returns them by island. The units are
  /// then again what they were at the start. The time follows the number of units and loads.
  std::vector<Reference> Choose(TP& tp);

  /// Table and identity, such as "UN G1"; empty for none.
  std::string Text(const Reference& reference) const;

 private:
  /// What choosing references writes into a unit.
  struct Marks {
    std::remove_cvref_t<decltype(UN::ref)> ref;
    u32 chosen;
  };

  std::vector<Reference> Read() const;

  DTSDB& m_tables;
  std::vector<Reference> m_atStart;  // by island
  std::vector<Marks> m_marks;        // of the units at the start
};

}  // namespace dtsdb::analysis::internal

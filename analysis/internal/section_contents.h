/// \file
/// What stands on each section, collected from the tables.
#pragma once

#include <vector>

#include "analysis/topology.h"
#include "model/dtsdb.h"

namespace dtsdb::analysis::internal {

/// The number of the first section; in front of it stand the heads of the two rings.
inline constexpr int kFirstSection = 2;

/// The sections of a model after a run, with what stands on them. Reads the tables only.
class SectionContents {
 public:
  explicit SectionContents(DTSDB& database);

  /// The sections on which something stands, voltage level by voltage level. A base section without nodes keeps its
  /// number, but is left out.
  std::vector<Section> InRingOrder();

  bool IsSection(int number) const {
    return number >= kFirstSection && static_cast<std::size_t>(number) < m_items.size();
  }

 private:
  int Next(int number);
  Section Describe(int number);
  int SectionOfNode(int nd);
  void Put(int number, Item item, int Counts::*count);
  void CollectNodes();
  template <class T>
  void CollectShunts(int Counts::*count);
  template <class Branch>
  void CollectBranches();

  DTSDB& m_database;
  std::vector<std::vector<Item>> m_items;  // of each section
  std::vector<Counts> m_counts;            // likewise
};

}  // namespace dtsdb::analysis::internal

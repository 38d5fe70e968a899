/// \file
/// The bus-section list: what hangs on each section.
#pragma once

#include "topology/internal/branch_ends.h"
#include "topology/internal/entries.h"
#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Rebuilds the list of the voltage levels of the run between its fixed marks, the entries of stations and levels.
///
/// Reads the sections, the nodes and the levels of the run. Writes the entries; BS `ibsl`; the isolation bits and `ibs`
/// of the devices; and through BranchEnds the branches. A failed call has written its line through qDebug.
class SectionList {
 public:
  explicit SectionList(const State& state)
      : m_network(state.network),
        m_levels(state.levels),
        m_sections(state.Sections()),
        m_entries(state.Entries()),
        m_branchEnds(state) {}

  /// Rebuilds the list. A full run, `allnew`, works out the branch ends first; an incremental one has done so where
  /// something changed.
  bool Build(bool allnew) const;
  /// Works out and lists one shunt device. A device that is switched off is listed under the section of its node all
  /// the same, with its isolation bit set; one on no section isn't.
  bool HangShunt(const ShuntView& device) const;
  /// Lists a branch end of kind `kind` under its section `bs`, if it has one. `ref` is the number of the end record.
  bool HangBranchEnd(int kind, int ref, int bs) const;

 private:
  bool ClearLevel(int kv) const;
  bool ListSections(int kv) const;
  bool ListShunts(int kv) const;
  bool ListBranchEnds(int kv) const;
  bool Hang(int bs, int kind, int ref) const;

  Network m_network;
  Levels m_levels;
  Sections m_sections;
  Entries m_entries;
  BranchEnds m_branchEnds;
};

}  // namespace dtsdb::internal

/// \file
/// A voltage level with sizes: where its columns and rows stand.
#pragma once

#include <string>
#include <vector>

#include "pictures/internal/level_grid.h"
#include "pictures/internal/level_shape.h"
#include "pictures/internal/transformers.h"
#include "pictures/picture.h"

namespace dtsdb::pictures::internal {

inline constexpr int kStep = 20;           ///< columns stand on multiples of it
inline constexpr int kSymbolSize = 20;     ///< of a switch
inline constexpr int kFeederWire = 24;     ///< from the last row to the symbol of a feeder
inline constexpr int kDeviceHeight = 28;   ///< of the symbol of a device
inline constexpr int kWindingHeight = 38;  ///< of the symbol of a transformer
inline constexpr int kLabelGap = 14;       ///< from the middle of a symbol to the label beside it

/// What is written beside things.
struct Wording {
  std::vector<std::vector<std::string>> ofSwitches;  ///< lines, by place in StationLevel::switches
  std::vector<std::vector<std::string>> ofDevices;   ///< likewise, in StationLevel::devices
  std::vector<std::vector<std::string>> ofBars;      ///< names of the buses, by node
};

/// How levels are worded.
struct WordingRules {
  std::vector<std::string> owners;  ///< identities that names may begin with
  bool flows = false;               ///< with powers
};

/// A level laid out, with sizes. Places are relative to its upper left corner until it is moved.
class Tier {
 public:
  /// `number` is the level's place in its station. The level must outlive this.
  Tier(const StationLevel& level, const TransformerPlan& plan, std::size_t number, const WordingRules& rules);

  const StationLevel& Level() const { return *m_level; }
  const LevelGrid& Grid() const { return m_grid; }
  const Wording& Words() const { return m_words; }

  void MoveTo(int x, int top) {
    m_x = x;
    m_top = top;
  }
  int X(int column) const { return m_x + m_columns[static_cast<std::size_t>(column)]; }
  int Y(int row) const { return m_top + m_rows[static_cast<std::size_t>(row)]; }
  /// The rightmost of the columns `first` to `last`.
  int RightmostOf(int first, int last) const;
  int Top() const { return m_top; }
  int Bottom() const { return m_top + m_height; }
  int Left() const { return m_x; }
  int Right() const { return m_x + m_width; }
  int Height() const { return m_height; }

  Role RoleOf(int device) const { return m_roles[static_cast<std::size_t>(device)]; }
  /// Where the wire of a feeder leaves the rows: on the first or last one.
  int EdgeOf(const GridFeeder& feeder) const { return feeder.up ? Y(0) : Y(m_grid.rows - 1); }

 private:
  void FindWords(const std::vector<std::vector<std::string>>& names, const WordingRules& rules);
  struct Half;
  void SizeColumns();
  void PlaceColumns(const std::vector<Half>& halves);
  void SizeRows();

  const StationLevel* m_level;
  std::vector<Role> m_roles;
  Wording m_words;
  LevelGrid m_grid;
  std::vector<int> m_columns;  // middles
  std::vector<int> m_rows;
  int m_width = 0;
  int m_height = 0;
  int m_x = 0;
  int m_top = 0;
};

}  // namespace dtsdb::pictures::internal

/// \file
/// How a voltage level hangs together: its bars, and the cells between and behind them.
#pragma once

#include <vector>

#include "pictures/station.h"

namespace dtsdb::pictures::internal {

/// What hangs together when the bars are taken away: a bay, a coupler, a row of three breakers.
struct Cell {
  std::vector<int> nodes;     ///< without bars
  std::vector<int> switches;  ///< with those to bars
  std::vector<int> devices;
  std::vector<int> bars;  ///< the nodes of the bars that it touches, each once, ascending
  bool up = false;        ///< its devices stand above the bars
};

/// A level as a graph of nodes and switches. The level must outlive it.
class LevelShape {
 public:
  /// `isUp` by device: it belongs above the bars.
  LevelShape(const StationLevel& level, const std::vector<bool>& isUp);

  const StationLevel& Level() const { return m_level; }
  const std::vector<bool>& IsUp() const { return m_isUp; }

  const std::vector<int>& Bars() const { return m_bars; }
  bool IsBar(int node) const { return m_isBar[static_cast<std::size_t>(node)]; }
  const std::vector<Cell>& Cells() const { return m_cells; }

  const std::vector<int>& SwitchesOf(int node) const { return m_switchesOf[static_cast<std::size_t>(node)]; }
  const std::vector<int>& DevicesOf(int node) const { return m_devicesOf[static_cast<std::size_t>(node)]; }
  const StationSwitch& Switch(int number) const { return m_level.switches[static_cast<std::size_t>(number)]; }
  /// The node at the other end of a switch.
  int Other(int number, int node) const {
    const StationSwitch& item = Switch(number);
    return item.from == node ? item.to : item.from;
  }

 private:
  void ChooseBars();
  void AddBar(int node);
  void CollectCells();
  void CollectCellOf(int node, std::vector<bool>& done);
  void Finish(Cell& cell) const;

  const StationLevel& m_level;
  std::vector<bool> m_isUp;
  std::vector<std::vector<int>> m_switchesOf;
  std::vector<std::vector<int>> m_devicesOf;
  std::vector<int> m_bars;
  std::vector<bool> m_isBar;
  std::vector<Cell> m_cells;
};

/// The switches of a cell one behind the other, with the nodes between: nodes[i] - switches[i] - nodes[i + 1].
struct Path {
  std::vector<int> nodes;
  std::vector<int> switches;

  bool IsEmpty() const { return switches.empty(); }
};

/// The shortest way through the cell from bar `from` to bar `to`; empty when there is none.
Path WayThrough(const LevelShape& shape, const Cell& cell, int from, int to);

/// The cell joins two bars by a chain of switches, and nothing else hangs on it.
bool IsCoupler(const LevelShape& shape, const Cell& cell);

}  // namespace dtsdb::pictures::internal

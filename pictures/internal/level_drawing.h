/// \file
/// The elements of a level that has its place.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "pictures/internal/tier.h"
#include "pictures/picture.h"

namespace dtsdb::pictures::internal {

/// The class of each section: "s0" to "s7", in the order in which they are asked for.
class SectionClasses {
 public:
  /// "live s3", or "dead".
  std::string Of(const StationNode& node);

 private:
  std::map<int, int> m_order;  // by section
};

/// Where the wire of a winding reaches the edge of its level.
struct Pin {
  int x = 0;
  int y = 0;
  bool up = false;
};

/// Draws a level on a picture. What it is given must outlive it.
class LevelDrawing {
 public:
  LevelDrawing(const Tier& tier, SectionClasses& classes, bool flows, Picture& picture);

  /// Adds the elements of nodes, buses, switches and devices, but for windings of transformers.
  void Draw();

  /// Where the wire of a winding in a transformer ends, by device.
  const std::map<int, Pin>& Pins() const { return m_pins; }
  std::string ClassesOf(int node);
  /// The element of a node, to which wires may be added.
  Element& NodeElement(int node) { return m_picture.elements[m_firstNode + static_cast<std::size_t>(node)]; }

 private:
  void DrawNodes();
  void DrawRails();
  void DrawBuses();
  void DrawSwitch(const GridSwitch& item);
  void DrawBranches(const StationSwitch& item, const GridSwitch& where);
  void DrawFeeder(const GridFeeder& feeder);
  void DrawLabels(Element& element, const GridSwitch& where) const;
  void DrawLabels(Element& element, const GridFeeder& feeder, Point centre) const;
  Point CentreOf(const GridSwitch& item) const;
  void AddWay(int node, const std::vector<GridPoint>& way, Point end);

  struct Rail {
    int left = 0;
    int right = 0;
    bool isEmpty = true;
    std::map<int, int> waysAt;      // upwards and downwards, by x
    std::map<int, int> sidewaysAt;  // along the rail to a switch, by x
  };

  const Tier& m_tier;
  const StationLevel& m_level;
  SectionClasses& m_classes;
  bool m_flows;
  Picture& m_picture;
  std::size_t m_firstNode = 0;
  std::vector<Rail> m_rails;
  std::map<int, Pin> m_pins;
};

}  // namespace dtsdb::pictures::internal

// Where stations stand, from locations in CGMES sets.

#include "formats/station_positions.h"

#include <gtest/gtest.h>

#include "tests/formats/cgmes/profile_text.h"

namespace dtsdb::tools::cgmes::test {
namespace {

/// A station S with a breaker, and locations.
class LocatedGrid {
 public:
  LocatedGrid() { m_text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"}, {{kContainerOf, "#V"}}); }

  LocatedGrid& Location(const std::string& id, const std::string& of) {
    m_text.Add("Location", id, {{"Location.PowerSystemResources", "#" + of}});
    return *this;
  }
  LocatedGrid& Point(const std::string& location, const std::string& number, const std::string& x,
                     const std::string& y) {
    m_text.Add("PositionPoint", location + "-" + number,
               {{"PositionPoint.Location", "#" + location},
                {"PositionPoint.sequenceNumber", number},
                {"PositionPoint.xPosition", x},
                {"PositionPoint.yPosition", y}});
    return *this;
  }
  ProfileText& Text() { return m_text; }
  StationPositions Positions() const { return PositionsOf(Imported(m_text).report); }

  static constexpr const char* kContainerOf = "Equipment.EquipmentContainer";

 private:
  ProfileText m_text;
};

TEST(CgmesPositions, AStationStandsAtItsLocation) {
  LocatedGrid grid;
  grid.Location("LS", "S").Point("LS", "1", "8.25", "50.5").Location("LB", "B").Point("LB", "1", "1", "2");
  EXPECT_EQ(grid.Positions(), (StationPositions{{"S", {8.25, 50.5}}}));
}

TEST(CgmesPositions, ALocationMayBeNamedByWhatStandsThere) {
  LocatedGrid grid;
  grid.Text().Add("Location", "LS").About("Substation", "S", {{"PowerSystemResource.Location", "#LS"}});
  grid.Point("LS", "1", "8.25", "50.5");
  EXPECT_EQ(grid.Positions(), (StationPositions{{"S", {8.25, 50.5}}}));
}

TEST(CgmesPositions, OfSeveralPointsTheMiddleOneCounts) {
  LocatedGrid grid;
  grid.Location("LS", "S").Point("LS", "3", "3", "30").Point("LS", "1", "1", "10").Point("LS", "2", "2", "20");
  EXPECT_EQ(grid.Positions(), (StationPositions{{"S", {2, 20}}}));
}

TEST(CgmesPositions, AStationWithoutALocationStandsAmidItsEquipment) {
  LocatedGrid grid;
  grid.Text().Add("Disconnector", "D", {{LocatedGrid::kContainerOf, "#V"}});
  grid.Location("LB", "B").Point("LB", "1", "1", "2").Location("LD", "D").Point("LD", "1", "3", "6");
  EXPECT_EQ(grid.Positions(), (StationPositions{{"S", {2, 4}}}));
}

TEST(CgmesPositions, WhatIsNoPositionCountsAsMissing) {
  LocatedGrid grid;
  grid.Location("LS", "S").Point("LS", "1", "east", "50.5").Location("LX", "nowhere").Point("LX", "1", "1", "2");
  EXPECT_TRUE(grid.Positions().empty());
  EXPECT_FALSE(PositionOfText("8.25"));
  EXPECT_FALSE(PositionOfText("8.25 nan"));
  EXPECT_EQ(PositionOfText(PositionText({8.25, -50.125})), (MapPosition{8.25, -50.125}));
}

TEST(CgmesPositions, LocationsMayComeInAFileOfTheirOwn) {
  ProfileText equipment;
  equipment.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"});
  const std::string geography =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" "
      "xmlns:md=\"http://iec.ch/TC57/61970-552/ModelDescription/1#\" "
      "xmlns:cim=\"http://iec.ch/TC57/2013/CIM-schema-cim16#\">\n"
      "<md:FullModel rdf:about=\"urn:uuid:geography\">\n"
      "<md:Model.profile>http://entsoe.eu/CIM/GeographicalLocation/2/1</md:Model.profile>\n"
      "</md:FullModel>\n"
      "<cim:Location rdf:ID=\"_L\"><cim:Location.PowerSystemResources rdf:resource=\"#_S\"/></cim:Location>\n"
      "<cim:PositionPoint rdf:ID=\"_P\"><cim:PositionPoint.Location rdf:resource=\"#_L\"/>"
      "<cim:PositionPoint.xPosition>8.25</cim:PositionPoint.xPosition>"
      "<cim:PositionPoint.yPosition>50.5</cim:PositionPoint.yPosition></cim:PositionPoint>\n"
      "</rdf:RDF>\n";
  const Imported imported(std::vector<std::string>{equipment.Text(), geography});
  EXPECT_EQ(PositionsOf(imported.report), (StationPositions{{"S", {8.25, 50.5}}}));
  EXPECT_TRUE(imported.report.unknown.empty());
}

}  // namespace
}  // namespace dtsdb::tools::cgmes::test

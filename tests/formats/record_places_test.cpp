// Which stations and voltage levels records belong to, on a line between two stations.

#include "formats/record_places.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/model_builder.h"

namespace dtsdb::tools {
namespace {

class RecordPlacesTest : public testing::Test {
 protected:
  RecordPlacesTest() {
    m_network.Station("North").Kv("North-110", 110).Station("South").Kv("South-110", 110);
    m_network.Breaker("B1", "North-110", "N1", "N2").Zbr("Z1", "B1");
    m_network.Line("L1", "DV", "North", "South", "North-110", "South-110", "N2", "N3").Load("D1", "South-110", "N3");
  }

  template <class T>
  RecordPlaces Of(const char* id) {
    return PlacesOf(m_network.Db(), T::kKind, &m_network.Of<T>(id));
  }

  static QString Id(const char* id) { return dtsdb::test::Id(id); }

  dtsdb::test::ModelBuilder m_network;
};

TEST_F(RecordPlacesTest, DeviceBelongsToItsLevelAndTheStationOfThat) {
  const RecordPlaces places = Of<LD>("D1");
  EXPECT_EQ(places.stations, std::vector{Id("South")});
  EXPECT_EQ(places.levels, std::vector{Id("South-110")});
}

TEST_F(RecordPlacesTest, LineBelongsToBothEndsThatOfItsFromEndFirst) {
  const RecordPlaces places = Of<LN>("L1");
  EXPECT_EQ(places.stations.front(), Id("North"));
  EXPECT_EQ(std::count(places.stations.begin(), places.stations.end(), Id("South")), 2);
  EXPECT_EQ(places.levels, (std::vector{Id("North-110"), Id("South-110")}));
}

TEST_F(RecordPlacesTest, ZeroImpedanceBranchBelongsWhereItsBreakerDoes) {
  EXPECT_EQ(Of<ZBR>("Z1").levels, std::vector{Id("North-110")});
}

TEST_F(RecordPlacesTest, NodeBelongsToALevelOnceTheModelIsValidated) {
  ASSERT_TRUE(m_network.Validate());
  EXPECT_EQ(Of<ND>("N1").levels, std::vector{Id("North-110")});
}

TEST_F(RecordPlacesTest, CompanyBelongsToNoStation) { EXPECT_TRUE(Of<CO>("CO").stations.empty()); }

}  // namespace
}  // namespace dtsdb::tools

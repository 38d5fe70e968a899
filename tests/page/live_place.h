/// \file
/// A realtime database with a small network that a live model follows, and what other programs do with it.
///
///     U1 N1 --B1-- N2 ------- L12 ------- N3 --B2-- N4 D2          station S1 | station S2
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "analysis/topology.h"
#include "formats/model_io.h"
#include "page/event_hub.h"
#include "page/live_model.h"
#include "script/switch_events.h"
#include "tests/support/model_builder.h"
#include "tests/support/temporary_directory.h"
#include "topology/switch_event.h"
#include "topology/tp.h"

namespace dtsdb::page::test {

/// An event as the page gets it.
struct SeenEvent {
  std::string name;
  nlohmann::json data;
};

inline SeenEvent Seen(const std::string& text) {
  const std::string head = "event: ";
  const std::size_t line = text.find('\n');
  const std::string data = text.substr(line + std::string("\ndata: ").size());
  return {text.substr(head.size(), line - head.size()), nlohmann::json::parse(data)};
}

/// What waits in a stream.
inline std::vector<SeenEvent> TakeAll(EventStream& stream) {
  std::vector<SeenEvent> events;
  while (const EventText event = stream.Take(std::chrono::milliseconds(0))) events.push_back(Seen(*event));
  return events;
}

class LivePlace : public testing::Test {
 protected:
  LivePlace() {
    m.Station("S1").Kv("K1").Breaker("B1", "K1", "N1", "N2").Unit("U1", "K1", "N1");
    m.Station("S2").Kv("K2").Breaker("B2", "K2", "N3", "N4").Load("D2", "K2", "N4");
    m.Line("L12", "DV", "S1", "S2", "K1", "K2", "N2", "N3");
    m.Of<UN>("U1").pmax = 300;
    m.Of<LD>("D2").p = 50;
  }

  /// Validates the network, works out its topology and stores it.
  void Store() {
    ASSERT_TRUE(m.Validate());
    TP topology(&m.Db());
    ASSERT_EQ(topology.tpAllnew(), 1);
    topology.tpSetRefUN();
    tools::SaveModel(m.Db(), tools::ModelName("rtdb:" + name));
  }

  /// Switches a component, works out the topology and stores what has changed.
  void Switch(int type, bool on, const char* id) {
    const SwitchEvent event{type, on, id};
    tools::PutInState(m.Db(), event, tools::ComponentNumber(m.Db(), event));
    TP topology(&m.Db());
    ASSERT_EQ(topology.tpAllnew(), 1);
    tools::SaveModel(m.Db(), tools::ModelName("rtdb:" + name));
  }

  void Follow() {
    auto followed = LiveModel::Follow(name, {"grid", "realtime database", true}, hub);
    ASSERT_TRUE(followed.has_value()) << followed.error().message;
    live = std::move(*followed);
    stream = hub.Open();
    ASSERT_EQ(TakeAll(*stream).size(), 1U);
  }

  /// A document of the newest state.
  nlohmann::json Document(std::string (Documents::*write)() const) const {
    return nlohmann::json::parse(
        live->Now()->InTurn([&](const analysis::Model&, const Documents& documents) { return (documents.*write)(); }));
  }

  dtsdb::test::TemporaryDirectory directory;
  std::string name = "grid";
  dtsdb::test::ModelBuilder m;
  EventHub hub{4};
  std::unique_ptr<LiveModel> live;
  std::shared_ptr<EventStream> stream;
};

}  // namespace dtsdb::page::test

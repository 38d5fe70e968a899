/// \file
/// The flows of one network, computed from the tables of its model and from a realtime database that it was written
/// into.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "breakerflow/flows.h"
#include "breakerflow/internal/access.h"
#include "breakerflow/internal/data.h"
#include "tests/support/realtime_store.h"

namespace dtsdb::test {

/// Collects everything that two computations must agree on, floats by their bits.
class FlowState {
 public:
  /// What a cbFlow has loaded and computed.
  static std::string Of(cbFlow& flow) {
    FlowState state;
    const internal::FlowAccess access(flow);
    for (auto it = flow.Nodes().cbegin(); it != flow.Nodes().cend(); ++it) {
      state.Add(it.key(), it->name, it->bs, it->p, it->q, it->sp, it->sq, it->v, it->a, it->flags, it->degree);
    }
    for (auto it = flow.Breakers().cbegin(); it != flow.Breakers().cend(); ++it) {
      state.Add(it.key(), it->id, it->nd, it->znd, it->ind, it->iznd, it->g1, it->g2, it->flags, it->loops,
                int{it->open}, int{it->zopen}, it->p, it->q);
    }
    const internal::FlowDevices devices = access.Devices();
    for (const auto* all :
         {&devices.units, &devices.loads, &devices.capacitors, &devices.lines, &devices.dcLines, &devices.windings}) {
      state.m_text += "devices\n";
      for (auto it = all->cbegin(); it != all->cend(); ++it) {
        state.Add(it.key(), it->id, it->nd, it->ind, it->p, it->q, int{it->zend});
      }
    }
    return state.m_text;
  }

  static std::string Of(const Flows& flows) {
    FlowState state;
    for (const BreakerFlow& b : flows.breakers) {
      state.Add(b.id, b.kv, b.nd, b.znd, b.set, static_cast<int>(b.where), static_cast<int>(b.state), b.p, b.q);
    }
    for (const FlowSet& set : flows.sets) {
      state.Add(set.kv, set.nodes, set.surplus.p, set.surplus.q, static_cast<int>(set.state));
      for (const int breaker : set.breakers) state.Add(breaker);
    }
    return state.m_text;
  }

 private:
  template <class... Values>
  void Add(const Values&... values) {
    (Put(values), ...);
    m_text += '\n';
  }
  void Put(const QString& text) { m_text += IdToBytes(text).toHex().toStdString() + ' '; }
  void Put(int number) { m_text += std::to_string(number) + ' '; }
  void Put(u32 number) { m_text += std::to_string(number) + ' '; }
  void Put(float number) {
    u32 bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    Put(bits);
  }

  std::string m_text;
};

/// The state of a cbFlow that has read the tables of `model` as it reads a database, and computed.
inline std::string StateFromTables(const DTSDB& model) {
  cbFlow flow(nullptr);
  const internal::FlowAccess access(flow);
  internal::LoadFlowData(internal::ModelRows(model), internal::MissingVoltage::kStays, access.Network(),
                         access.Devices());
  flow.calculate();
  return FlowState::Of(flow);
}

/// The state of a cbFlow that works on a database as a program lets it.
inline std::string StateFromRows(dbDatabase* db) {
  cbFlow flow(db);
  flow.loadData();
  flow.calculate();
  return FlowState::Of(flow);
}

/// Checks that `model`, and the database `db` that holds the same, give the same in all ways.
inline void ExpectSameFlows(const DTSDB& model, dbDatabase* db) {
  EXPECT_TRUE(StateFromTables(model) == StateFromRows(db));
  for (const bool completes : {false, true}) {
    const FlowSettings settings{0.1F, completes};
    EXPECT_TRUE(FlowState::Of(ComputeFlows(model, settings)) == FlowState::Of(ComputeFlows(db, settings))) << completes;
  }
}

/// The same with a database that `model` is written into.
inline void ExpectSameFlows(DTSDB& model) {
  RealtimeStore store;
  model.WriteFastdb(store.Db());
  ExpectSameFlows(model, store.Db());
}

}  // namespace dtsdb::test

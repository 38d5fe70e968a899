#include "breakerflow/cbflow.h"

#include <cmath>
#include <utility>

#include "breakerflow/internal/data.h"
#include "breakerflow/internal/grouping.h"
#include "breakerflow/internal/log.h"
#include "breakerflow/internal/loop_solution.h"
#include "breakerflow/internal/sets.h"
#include "breakerflow/internal/tree_solution.h"
#include "model/text.h"

namespace dtsdb {

void ndGroup::add(int nd, float p, float q, float v, float a) {
  if (contains(nd)) return;
  m_nodes.insert(nd, nd);
  m_p += p;
  m_q += q;
  m_v = v;
  m_a = a;
}

cbFlow::cbFlow(dbDatabase* db) : m_pDatabase(db) { internal::OpenFlowLog(); }
cbFlow::cbFlow(dbDatabase* db, float delta) : m_delta(std::fabs(delta)), m_pDatabase(db) { internal::OpenFlowLog(); }
cbFlow::~cbFlow() { clear(); }

void cbFlow::setDelta(float delta) { m_delta = std::fabs(delta); }

void cbFlow::clear() {
  m_ndArray.clear();
  m_cbArray.clear();
  for (auto* devices : {&m_cpArray, &m_ldArray, &m_lnArray, &m_unArray, &m_xfArray, &m_dlnArray}) devices->clear();
  for (auto* lists : {&m_ndcbMap, &m_bsNdMap, &m_bsCbMap, &m_bsGroupMap}) lists->clear();
  m_bsValid.clear();
  m_bsBalance.clear();
  m_groups.clear();
  m_groupOfNode.clear();
}

void cbFlow::loadData() {
  clear();
  internal::LoadStoredFlowData(m_pDatabase, Network(), Devices());
}

void cbFlow::storeData() {
  if (!DTSDB_ASSERT(m_pDatabase != nullptr, "db != NULL")) return;
  internal::FlowWriter writer(m_pDatabase);
  for (const cbBreaker& each : std::as_const(m_cbArray)) writer.Write(each.id, each.p, each.q, each.flags);
  writer.Commit();
}

namespace {

/// Logs that a set doesn't balance and isn't computed.
void LogRefusal(internal::FlowLogLines& log, const internal::FlowNetwork& network, int set) {
  static const QByteArray kSet = internal::LogBytes("计算母线 ");
  static const QByteArray kRefused = internal::LogBytes(" 开关集合功率不平衡，不能计算。");
  log << kSet.constData() << set << kRefused.constData() << '\n';
  for (const int nd : network.setNodes.value(set)) {
    log << "nodeName = " << IdToBytes(network.nodes.value(nd).name).constData() << '\n';
  }
  log << '\n';
}

}  // namespace

void cbFlow::calculate() {
  nodeInject();
  frombs();
  valid();
  internal::FlowLogLines log;
  for (auto set = m_bsValid.cbegin(); set != m_bsValid.cend(); ++set) {
    if (set.value() != 0) {
      group(set.key());
      calculate(set.key());
    } else {
      LogRefusal(log, Network(), set.key());
    }
  }
  calculateLoopNodeInject();
  for (auto it = m_groups.cbegin(); it != m_groups.cend(); ++it) calculateCBCurrent(it.key(), it.value());
}

// The stages

internal::FlowNetwork cbFlow::Network() { return {m_ndArray, m_cbArray, m_ndcbMap, m_bsNdMap, m_bsCbMap}; }
internal::FlowDevices cbFlow::Devices() { return {m_unArray, m_ldArray, m_cpArray, m_lnArray, m_dlnArray, m_xfArray}; }
internal::FlowBalances cbFlow::Balances() { return {m_bsValid, m_bsBalance}; }
internal::FlowGroups cbFlow::Groups() { return {m_bsGroupMap, m_groups, m_groupOfNode}; }

void cbFlow::nodeInject() { internal::InjectPower(m_ndArray, Devices()); }
void cbFlow::frombs() { internal::GatherSets(Network(), Balances(), m_bsGroupMap); }
void cbFlow::valid() { internal::TestBalance(Network(), Balances(), m_delta); }

void cbFlow::group(int bs) { internal::LoopGrouping(Network(), Groups()).GroupSet(bs); }
void cbFlow::merge(ndGroup& into, ndGroup& from) { internal::LoopGrouping(Network(), Groups()).Merge(into, from); }
void cbFlow::modify(int key, ndGroup& group) { internal::ContractGroup(Network(), key, group); }

void cbFlow::calculate(int bs) { internal::SolveTree(Network(), Groups(), bs); }
void cbFlow::calculateLoopNodeInject() { internal::InjectIntoGroups(Network(), Groups()); }
void cbFlow::calculateCBCurrent(int /*key*/, const ndGroup& group) { internal::SolveLoops(Network(), group); }

bool cbFlow::matrixMultiply(Matrix<float>& a, Matrix<float>& b, Matrix<float>& c) {
  return internal::Multiply(a, b, c);
}
bool cbFlow::invertGaussJordan(Matrix<float>& a) { return internal::Invert(a); }

}  // namespace dtsdb

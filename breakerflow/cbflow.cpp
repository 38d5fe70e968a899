#include "breakerflow/cbflow.h"

#include <cmath>

#include "breakerflow/log.h"
#include "model/text.h"

namespace dtsdb {

cbFlow::cbFlow(dbDatabase* db) : m_pDatabase(db) {}
cbFlow::cbFlow(dbDatabase* db, float delta) : m_delta(std::fabs(delta)), m_pDatabase(db) {}
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

void cbFlow::calculate() {
  nodeInject();
  frombs();
  valid();
  for (auto set = m_bsValid.cbegin(); set != m_bsValid.cend(); ++set) {
    if (set.value() != 0) {
      group(set.key());
      calculate(set.key());
    } else {
      LogRefusal(set.key());
    }
  }
  FlowLog().flush();
  calculateLoopNodeInject();
  for (auto it = m_groups.cbegin(); it != m_groups.cend(); ++it) calculateCBCurrent(it.key(), it.value());
}

void cbFlow::LogRefusal(int set) const {
  static const QByteArray kSet = LogBytes("计算母线 ");
  static const QByteArray kRefused = LogBytes(" 开关集合功率不平衡，不能计算。");
  FlowLog() << kSet.constData() << set << kRefused.constData() << '\n';
  for (const int nd : m_bsNdMap.value(set)) {
    FlowLog() << "nodeName = " << IdToBytes(m_ndArray.value(nd).name).constData() << '\n';
  }
  FlowLog() << '\n';
}

}  // namespace dtsdb

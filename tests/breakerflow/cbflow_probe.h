/// \file
/// Reaching the private stages and the state of a cbFlow, for tests.
#pragma once

#include "breakerflow/cbflow.h"

namespace dtsdb {

/// A cbFlow's friend. The members are named as the stages are.
class CbFlowProbe {
 public:
  explicit CbFlowProbe(cbFlow& flow) : m_flow(flow) {}

  void Clear() { m_flow.clear(); }
  void NodeInject() { m_flow.nodeInject(); }
  void Frombs() { m_flow.frombs(); }
  void Valid() { m_flow.valid(); }
  void Group(int set) { m_flow.group(set); }
  void Merge(ndGroup& into, ndGroup& from) { m_flow.merge(into, from); }
  void Modify(int key, ndGroup& group) { m_flow.modify(key, group); }
  void Calculate(int set) { m_flow.calculate(set); }
  void CalculateLoopNodeInject() { m_flow.calculateLoopNodeInject(); }
  void CalculateCBCurrent(int key, const ndGroup& group) { m_flow.calculateCBCurrent(key, group); }
  bool MatrixMultiply(Matrix<float>& a, Matrix<float>& b, Matrix<float>& c) { return m_flow.matrixMultiply(a, b, c); }
  bool InvertGaussJordan(Matrix<float>& a) { return m_flow.invertGaussJordan(a); }

  QMap<int, cbNode>& Nodes() { return m_flow.m_ndArray; }
  QMap<int, cbBreaker>& Breakers() { return m_flow.m_cbArray; }
  QMap<int, cbDevice>& Units() { return m_flow.m_unArray; }
  QMap<int, cbDevice>& Loads() { return m_flow.m_ldArray; }
  QMap<int, cbDevice>& Caps() { return m_flow.m_cpArray; }
  QMap<int, cbDevice>& Lines() { return m_flow.m_lnArray; }
  QMap<int, cbDevice>& Windings() { return m_flow.m_xfArray; }
  QMap<int, cbDevice>& DcLines() { return m_flow.m_dlnArray; }
  QMap<int, QList<int>>& BreakersOfNode() { return m_flow.m_ndcbMap; }
  QMap<int, QList<int>>& NodesOfSet() { return m_flow.m_bsNdMap; }
  QMap<int, QList<int>>& BreakersOfSet() { return m_flow.m_bsCbMap; }
  QMap<int, QList<int>>& GroupsOfSet() { return m_flow.m_bsGroupMap; }
  QMap<int, int>& ValidSets() { return m_flow.m_bsValid; }
  QMap<int, ndGroup>& Groups() { return m_flow.m_groups; }

 private:
  cbFlow& m_flow;
};

}  // namespace dtsdb

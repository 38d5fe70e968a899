/// \file
/// Class cbFlow: the active and reactive power through every closed breaker.
#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <unordered_map>

#include "include/template.h"
#include "model/basic_types.h"

class dbDatabase;

namespace dtsdb {

namespace internal {
class FlowAccess;
struct FlowBalances;
struct FlowDevices;
struct FlowGroups;
struct FlowNetwork;
}  // namespace internal

/// \name cbBreaker `flags`: where the breaker lies in its set
///@{
inline constexpr u32 CB_LOOP = 1;    ///< on a loop
inline constexpr u32 CB_BRIDGE = 2;  ///< between loops
inline constexpr u32 CB_RADIAL = 4;  ///< in a part that holds no loop and dangles
///@}

/// \name CB `tp_status`: the same in the realtime database, at most one of the three
///@{
inline constexpr u32 TP_FLOW_LOOP = 8;
inline constexpr u32 TP_FLOW_BRIDGE = 16;
inline constexpr u32 TP_FLOW_RADIAL = 32;
///@}

/// A node on a closed live breaker.
struct cbNode {
  QString name;    ///< as the breaker gives it
  int bs = -1;     ///< number of its set
  float p = 0;     ///< injection into the node
  float q = 0;     ///< MW and Mvar
  float sp = 0;    ///< saved injection; in the end, for a node of a loop group, the injected current, real part
  float sq = 0;    ///< and imaginary part
  float v = 0;     ///< voltage of its bus section
  float a = 0;     ///< and angle, in radians
  u32 flags = 0;   ///< work marks of the walk
  int degree = 0;  ///< number of breakers still open to the walk
};

/// A breaker, open ones included.
struct cbBreaker {
  QString id;          ///< identity of the breaker
  QString nd;          ///< the names of its nodes
  QString znd;         ///< of the to end
  int ind = -1;        ///< and their numbers
  int iznd = -1;       ///< of the to end
  int g1 = -1;         ///< its ends when every loop group has been contracted to one node
  int g2 = -1;         ///< of the to end
  u32 flags = 0;       ///< CB_LOOP, CB_BRIDGE or CB_RADIAL
  int loops = 0;       ///< number of loops through this breaker
  bool open = false;   ///< open, or dead
  bool zopen = false;  ///< the same
  float p = 0;         ///< flow from `ind` towards `iznd`
  float q = 0;         ///< reactive flow, the same way
};

/// What feeds a node: a unit, a load, a shunt device or the end of a branch.
struct cbDevice {
  QString id;         ///< identity of the device
  QString nd;         ///< name of its node
  int ind = -1;       ///< number of its node
  float p = 0;        ///< as the node sees it: what flows into the node is positive
  float q = 0;        ///< reactive, the same way
  bool zend = false;  ///< the to end of a branch
};

/// What is injected into all nodes of a set together. Zero where the data fit.
struct FlowBalance {
  float p = 0;  ///< MW
  float q = 0;  ///< Mvar
};

/// Nodes of loops that touch each other. They are treated as one node, and then solved together.
class ndGroup {
 public:
  /// Takes node `nd` in, with its injection; the group's voltage becomes that of the node. A node that is in the group
  /// already changes nothing.
  void add(int nd, float p, float q, float v, float a);
  bool contains(int nd) const { return m_nodes.contains(nd); }

  QMap<int, int> m_nodes;  ///< node numbers, each under itself
  float m_p = 0;           ///< sum of the injections
  float m_q = 0;           ///< reactive
  float m_v = 0;           ///< voltage and angle of the node last added
  float m_a = 0;           ///< radians
};

/// Computes the power through every closed breaker of a realtime database.
///
/// What flows into each node from units, loads, shunt devices and branches is known; the breakers between the nodes
/// carry the balance. Where they form a tree their flows follow from the injections. Where they form loops, the
/// currents are shared such that the sum of their squares is least, as if all breakers had the same impedance.
///
///     cbFlow flow(&database);  // open, with a topology and the voltages of the sections
///     flow.loadData();         // reads, and ends the transaction
///     flow.calculate();
///     flow.storeData();        // writes p, q and the class of each breaker, and commits
///
/// The nodes that closed breakers join are a set. A set whose injections don't sum to zero isn't computed: its
/// breakers stay at 0, and "cbFlow.txt" names it. docs/breaker-flow.md has the details.
///
/// Doesn't own the database, which must outlive it. One thread at a time, and all objects share the log.
class cbFlow {
 public:
  /// With a tolerance of 0.01.
  explicit cbFlow(dbDatabase* db);
  /// With the absolute value of `delta` as tolerance.
  cbFlow(dbDatabase* db, float delta);
  cbFlow(const cbFlow&) = default;
  cbFlow& operator=(const cbFlow&) = default;
  virtual ~cbFlow();

  /// The tolerance of the balance test, MW and Mvar; the absolute value counts.
  void setDelta(float delta);
  float getDelta() const { return m_delta; }

  /// Reads breakers and injections; forgets what was loaded and calculated before.
  void loadData();
  /// Works the flows out, once for what was loaded: the groups of loops of an earlier run stay, and a second run
  /// would only add to them. Kept: K57.
  void calculate();
  /// Writes the flows and classes of all breakers, open ones included, and commits.
  void storeData();

  // The results, for those who show them.
  /// The breakers, by running number in the order of their identities.
  const QMap<int, cbBreaker>& Breakers() const { return m_cbArray; }
  /// The nodes by number.
  const QMap<int, cbNode>& Nodes() const { return m_ndArray; }
  /// Number of sets. They are numbered from 0.
  int SetCount() const { return static_cast<int>(m_bsNdMap.size()); }
  /// The nodes of a set and the keys of its breakers. Empty for a number out of range.
  QList<int> SetNodes(int set) const { return m_bsNdMap.value(set); }
  QList<int> SetBreakers(int set) const { return m_bsCbMap.value(set); }
  FlowBalance SetBalance(int set) const { return m_bsBalance.value(set); }
  /// True when the set passed the balance test, which looks for surplus only, and has been computed.
  bool IsBalanced(int set) const { return m_bsValid.value(set) != 0; }

 private:
  friend class CbFlowProbe;
  friend class internal::FlowAccess;

  void clear();
  void nodeInject();
  void frombs();
  void valid();
  void group(int bs);
  void merge(ndGroup& into, ndGroup& from);
  void modify(int key, ndGroup& group);
  void calculate(int bs);
  void calculateLoopNodeInject();
  void calculateCBCurrent(int key, const ndGroup& group);
  bool matrixMultiply(Matrix<float>& a, Matrix<float>& b, Matrix<float>& c);
  bool invertGaussJordan(Matrix<float>& a);

  // The state as the stages see it
  internal::FlowNetwork Network();
  internal::FlowDevices Devices();
  internal::FlowBalances Balances();
  internal::FlowGroups Groups();

  float m_delta = 0.01F;
  dbDatabase* m_pDatabase = nullptr;
  QMap<int, cbNode> m_ndArray;                                                            ///< by node number
  QMap<int, cbBreaker> m_cbArray;                                                         ///< by running number
  QMap<int, cbDevice> m_cpArray, m_ldArray, m_lnArray, m_unArray, m_xfArray, m_dlnArray;  ///< on these nodes only
  QMap<int, QList<int>> m_ndcbMap;                                                        ///< breakers of a node
  QMap<int, QList<int>> m_bsNdMap, m_bsCbMap, m_bsGroupMap;                               ///< by set
  QMap<int, int> m_bsValid;                                                               ///< by set: 1 balanced
  QMap<int, ndGroup> m_groups;                                                            ///< by one of their nodes

  QMap<int, FlowBalance> m_bsBalance;  ///< by set

  /// By node: the key of its group in m_groups. No node is in two groups.
  std::unordered_map<int, int> m_groupOfNode;
};

}  // namespace dtsdb

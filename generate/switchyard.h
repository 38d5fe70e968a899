/// \file
/// The switchgear of a voltage level: the arrangements of busbars, breakers and disconnectors found in stations.
#pragma once

#include <QString>
#include <utility>

#include "generate/input_rows.h"

namespace dtsdb::tools {

enum class Arrangement {
  kSingleBus,        ///< every circuit through one bay on the one busbar
  kDoubleBus,        ///< every circuit on one of two busbars, joined by a coupler
  kBreakerAndAHalf,  ///< two circuits share three breakers in a row between two busbars
  kRing,             ///< as many breakers as circuits, in a ring
};

/// Whether and where something of a switchyard is open.
struct SwitchStates {
  bool coupler = true;   ///< of a double bus: the coupler is closed
  int openCircuit = -1;  ///< number of the circuit whose breaker is open, -1 for none; not in a ring or a row of three
};

/// Writes the breakers, disconnectors and their status points of one voltage level.
///
/// Circuits have the numbers from 0. A circuit's equipment stands on the node that CircuitNode names, whatever the
/// arrangement.
class Switchyard {
 public:
  /// The switchyard of level `level`, for `circuits` circuits: at least one, in a ring at least three. `rows` must
  /// outlive it.
  Switchyard(InputRows& rows, QString level, Arrangement arrangement, int circuits)
      : m_rows(&rows), m_level(std::move(level)), m_arrangement(arrangement), m_circuits(circuits) {}

  /// The node on which circuit `circuit` of level `level` ends.
  static QString CircuitNode(const QString& level, int circuit);

  /// Wires the circuits.
  void Build(const SwitchStates& states);

  /// Number of busbars; in a ring, the node of circuit 0 serves for one.
  int BusbarCount() const;
  /// The node of busbar `number`, from 0.
  QString BusbarNode(int number) const;
  /// The identity of the breaker that couples a double bus.
  QString CouplerBreaker() const { return m_level + QLatin1String("-CQ0"); }

 private:
  void BuildBays(const SwitchStates& states);
  void BuildDiameters();
  void BuildRing();
  void PutBreaker(const QString& id, const QString& nd, const QString& znd, bool closed);
  void PutDisconnector(const QString& id, const QString& nd, const QString& znd, bool closed);
  void PutSwitch(const QString& id, const QString& nd, const QString& znd, bool closed, u32 type, const char* name);

  InputRows* m_rows;
  QString m_level;
  Arrangement m_arrangement;
  int m_circuits;
};

}  // namespace dtsdb::tools

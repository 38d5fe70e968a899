/// \file
/// The switchgear of a voltage level, as rows.
#pragma once

#include <QString>

#include "formats/input_rows.h"
#include "generate/arrangements.h"
#include "generate/plan.h"

namespace dtsdb::tools {

/// The node on which circuit `circuit`, from 0, of level `level` ends, whatever the arrangement.
QString CircuitNode(const QString& level, int circuit);

/// Writes the breakers, disconnectors and their status points of one voltage level.
class Switchyard {
 public:
  /// The switchyard of `level`, whose identity is `id`. `rows` and `level` must outlive it.
  Switchyard(InputRows& rows, const QString& id, const Level& level)
      : m_rows(rows), m_id(id), m_level(level), m_data(DataOf(level.arrangement)) {}

  void Build();

  /// Number of busbars, at least one.
  int BusbarCount() const { return m_data.busbars == 0 ? 1 : m_data.busbars; }
  /// The node of busbar `number`, from 0.
  QString BusbarNode(int number) const;
  /// The identity of the breaker that couples two busbars.
  QString CouplerBreaker() const { return m_id + QLatin1String("-CQ0"); }

 private:
  void BuildBay(const Bay& bay, const QString& id, int circuit, bool breakerClosed);
  QString NodeOf(Point point, const QString& bay, int circuit) const;
  bool IsOnOwnBus(Point bus, int circuit) const;
  void PutSwitch(const QString& id, const QString& nd, const QString& znd, bool isBreaker, bool closed);

  InputRows& m_rows;
  QString m_id;
  const Level& m_level;
  const ArrangementData& m_data;
};

}  // namespace dtsdb::tools

/// \file
/// Where the records of a model go in an XIIDM file: ids, levels, numbers of nodes.
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <array>
#include <utility>
#include <vector>

#include "model/dtsdb.h"

namespace dtsdb::tools::xiidm {

/// What a record is called in the file.
struct FileName {
  QString id;    ///< unique in the file
  QString name;  ///< the identity as real text where it isn't the id, else null
};

/// An open switch that stands for what is off or open at the node `to`.
struct Disconnector {
  QString id;
  int from;
  int to;
};

/// A voltage level: its nodes, and the rows of the tables that stand in it.
struct PlannedLevel {
  FileName name;
  int station = -1;
  double nominal = 0;          ///< in kV, above 0
  std::vector<QString> nodes;  ///< the real texts of the nodes by number; null for one that is another's second
  std::vector<std::pair<int, int>> joined;  ///< numbers of nodes that are one
  std::vector<Disconnector> disconnectors;
  std::vector<std::pair<QString, int>> converters;  ///< ids of those of DC lines, and their nodes
  std::vector<int> buses, breakers, units, loads, shunts;
};

/// An end of equipment: a level, and the number of a node in it.
struct PlannedEnd {
  int level = -1;
  int node = -1;
};

/// What becomes of a row of a table of equipment. A device has the first end only.
struct PlannedRow {
  FileName name;
  PlannedEnd from;
  PlannedEnd to;
};

/// A transformer with three windings, whose level and windings are those that its import makes.
struct Star {
  FileName name;
  int level;
  std::array<int, 3> windings;  ///< rows of XF
};

/// The plan of a file. Each end of equipment has a node of its own, as the format wants it; internal connections join
/// those of one node of ours. The rows of a table stand at the numbers of its records.
struct ExportPlan {
  std::vector<FileName> stations;
  std::vector<PlannedLevel> levels;
  std::vector<PlannedRow> buses, breakers, units, loads, shunts, lines, windings, dcLines;
  std::vector<std::array<QString, 2>> converters;      ///< the ids of those of each DC line
  std::vector<std::vector<int>> levelsOf, windingsOf;  ///< by station, without those of stars
  std::vector<std::vector<Star>> starsOf;              ///< by station
  QHash<QString, QString> companies;                   ///< by district
  QHash<QString, const ZBR*> branches;                 ///< by breaker
};

/// Plans the file of a model, which must live as long as the plan. Throws Failure, with the record, where one names a
/// station, level or breaker that isn't there.
ExportPlan PlanExport(const DTSDB& model);

}  // namespace dtsdb::tools::xiidm

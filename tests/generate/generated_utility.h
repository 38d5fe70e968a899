/// \file
/// Generated utilities, validated and with their topology.
#pragma once

#include <gtest/gtest.h>

#include <QString>

#include "generate/generator.h"
#include "tests/support/temporary_directory.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace dtsdb::tools::test {

inline DTSDB Generated(const GeneratorOptions& options) {
  DTSDB database;
  GenerateUtility(database, options);
  return database;
}

inline DTSDB Generated(int stations, quint64 seed) {
  GeneratorOptions options;
  options.stations = stations;
  options.seed = seed;
  return Generated(options);
}

/// The errors and warnings of a validation, a line for each.
inline QString Faults(DTSDB& database) {
  const dtsdb::test::TemporaryDirectory directory;  // of the log
  NMD validation(&database);
  EXPECT_TRUE(validation.DetectAll());
  QString lines;
  for (const Finding& finding : validation.Findings()) {
    if (finding.severity != Severity::kNotice) lines += finding.text + QLatin1Char('\n');
  }
  return lines;
}

/// Validates `database` and works out its topology.
inline void MakeTopologyOf(DTSDB& database) {
  ASSERT_EQ(Faults(database).toStdString(), "");
  TP topology(&database);
  ASSERT_EQ(topology.tpAllnew(), 1);
}

/// Number of records that fulfil `is`.
template <class T, class Predicate>
int CountOf(tTable<T>& table, Predicate is) {
  int count = 0;
  for (int i = 0; i < table.GetCount(); ++i) count += is(table[i]) ? 1 : 0;
  return count;
}

}  // namespace dtsdb::tools::test

// Builds the smallest model in memory and runs it through the installed library: prints "1 island".
#include <cstdio>

#include "breakerflow/cbflow.h"
#include "model/dtsdb.h"
#include "topology/tp.h"
#include "validation/nmd.h"

int main() {
  using namespace dtsdb;
  const auto text = [](const char* bytes) { return QString::fromLatin1(bytes); };
  DTSDB db;
  db.m_coTable->Add(CO(text("company")));

  DV district(text("district"));
  district.co = text("company");
  db.m_dvTable->Add(district);

  for (const char* name : {"A", "B"}) {
    ST station(text(name));
    station.dv = district.id;
    db.m_stTable->Add(station);
    KV level(text(name));
    level.st = station.id;
    db.m_kvTable->Add(level);
  }

  UN unit(text("unit"));
  unit.kv = unit.nd = text("A");
  db.m_unTable->Add(unit);

  LD load(text("load"));
  load.kv = load.nd = text("B");
  db.m_ldTable->Add(load);

  LN line(text("line"));
  line.dv = district.id;
  line.st = line.kv = line.nd = text("A");
  line.zst = line.zkv = line.znd = text("B");
  db.m_lnTable->Add(line);

  NMD validation(&db);
  if (!validation.DetectAll()) return 1;
  TP topology(&db);
  if (topology.tpAllnew() != 1) return 1;
  if (cbFlow(nullptr).getDelta() != 0.01F) return 1;
  std::printf("%d island\n", db.m_islandTable->GetCount());
  return db.m_islandTable->GetCount() == 1 ? 0 : 1;
}

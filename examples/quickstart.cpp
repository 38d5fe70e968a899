// From an object file to its live islands: quickstart MODEL.obj
#include <cstdio>

#include "model/dtsdb.h"
#include "model/text.h"
#include "topology/tp.h"
#include "validation/nmd.h"

int main(int argc, char** argv) {
  dtsdb::DTSDB network;
  if (argc != 2 || !network.ReadObject(QString::fromLocal8Bit(argv[1]))) return 2;

  dtsdb::NMD validation(&network);
  if (!validation.DetectAll() || !network.m_globalTable->GetPh(0).valid) return 1;  // nmd.log contains why

  dtsdb::TP topology(&network);
  if (!topology.tpAllnew()) return 1;
  topology.tpSetRefUN();
  for (int i = 0; i < network.m_islandTable->GetCount(); ++i) {
    const dtsdb::ISLAND& island = network.m_islandTable->GetPh(i);
    std::printf("island %d, reference %s\n", island.id, dtsdb::TerminalBytes(dtsdb::TextFromId(island.ref_id)).data());
  }
}

#include "bench/sample_network.h"

#include <QDir>
#include <memory>
#include <stdexcept>

#include "generate/generator.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace dtsdb::bench {
const SampleNetwork& SampleNetwork::Of(int stations) {
  static int size = -1;
  static std::unique_ptr<SampleNetwork> network;
  if (size != stations) {
    network.reset();
    network.reset(new SampleNetwork(stations));
    size = stations;
  }
  return *network;
}

SampleNetwork::SampleNetwork(int stations) {
  Require(m_directory.isValid(), "no temporary directory for the network");
  Make(stations, m_directory.path());
}

void SampleNetwork::Make(int stations, const QString& folder) {
  Require(QDir::setCurrent(folder), "the folder of the network isn't there");
  DTSDB network;
  tools::GenerateUtility(network, {stations, 1});
  Require(network.WriteObject(folder + QLatin1String(kInput)), "the network can't be written");

  NMD validation(&network);
  Require(validation.DetectAll() && network.m_globalTable->GetPh(0).valid == 1, "the network is not good");
  Require(TP(&network).tpAllnew() == 1, "the network has no topology");
  Require(network.WriteObject(folder + QLatin1String(kReady)), "the network can't be written");
}

long RowCount(DTSDB& model) {
  long rows = 0;
  ForEachTable(model, [&rows](auto& table) { rows += table.GetCount(); });
  return rows;
}

}  // namespace dtsdb::bench

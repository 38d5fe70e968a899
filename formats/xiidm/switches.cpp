#include "formats/import/switch_rows.h"

#include "formats/xiidm/steps.h"
#include "model/record_bits.h"

namespace dtsdb::tools::xiidm {
namespace {

/// A switch of our own export that stands for what is off is no breaker.
bool IsBreakerRow(const Mapping& mapping, int device) {
  return !mapping.objects.IsTrue(device, kOwnDisconnects) || !mapping.objects.IsTrue(device, kOpen);
}

CB BreakerRow(const Mapping& mapping, int device) {
  const Terminal& from = mapping.connections.End(device, 0);
  const Terminal& to = mapping.connections.End(device, 1);
  CB row(mapping.ids.Id(KIND_CB, device));
  row.kv = mapping.LevelId(from);
  row.nd = mapping.NodeId(from);
  row.znd = mapping.NodeId(to);
  const bool isOpen = mapping.objects.IsTrue(device, kOpen) || !from.isConnected || !to.isConnected;
  row.flags = TypeOfSwitch(mapping.objects.Text(device, kKind) != "DISCONNECTOR") | (isOpen ? CB_OPEN : 0);
  return row;
}

ZBR BranchRow(const Mapping& mapping, int device, const QString& breaker) {
  const Objects& objects = mapping.objects;
  QString id = ZeroImpedanceId(mapping.ids.Text(KIND_CB, device));
  if (objects.Has(device, kOwnZeroImpedance)) {
    const std::string own(objects.Text(device, kOwnZeroImpedance));
    id = IdFromText(Representable(QString::fromStdString(own))).value_or(id);
  }
  ZBR row(id);
  row.cb = breaker;
  row.p = Single(objects.NumberOrZero(device, kOwnZeroImpedanceP));
  row.q = Single(objects.NumberOrZero(device, kOwnZeroImpedanceQ));
  return row;
}

}  // namespace

void MapSwitches(Mapping& mapping) {
  std::vector<int> switches = mapping.Standing(Role::kSwitch);
  std::erase_if(switches, [&](int device) { return !IsBreakerRow(mapping, device); });
  for (const int device : switches) mapping.ids.Add(KIND_CB, device, mapping.LevelText(device));
  mapping.ids.Settle(KIND_CB);
  for (const int device : switches) {
    const CB row = BreakerRow(mapping, device);
    mapping.rows.Of<CB>().push_back(row);
    const bool isClosed = (row.flags & CB_OPEN) == 0;
    const bool isRetained = mapping.objects.IsTrue(device, kRetained) && isClosed;
    if (!isRetained && !mapping.objects.Has(device, kOwnZeroImpedance)) continue;
    if (mapping.options.mergesRetained) {
      mapping.Change(device, "it is retained, but joins its nodes, as --merge-retained asks for");
    } else {
      mapping.rows.Of<ZBR>().push_back(BranchRow(mapping, device, row.id));
    }
  }
}

}  // namespace dtsdb::tools::xiidm

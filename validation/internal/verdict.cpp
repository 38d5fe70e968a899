#include "validation/internal/verdict.h"

#include <QDateTime>

#include "validation/internal/graph.h"

namespace dtsdb::internal {

void StartVerdict(tTable<GLOBAL>& global) {
  GLOBAL verdict;
  verdict.id = 0;
  verdict.f1 = global.GetCount() != 0 ? global[0].f1 : 100.0F;
  verdict.bs_free = -1;
  verdict.bs_dead = -1;
  verdict.bs_live = -1;
  verdict.bsl_free = -1;
  verdict.bsl_head = -1;
  verdict.n1 = -1;
  verdict.u1 = 0;
  verdict.time = 0;
  verdict.valid = 0;
  verdict.check_time = 0;
  verdict.invalid = 1;
  verdict.errors = 0;
  global.Clear();
  global.SetGrowBy(1);
  global.Add(verdict);
  global.Compact();
}

void WarnOfIdleNodes(DTSDB& model, ValidationLog& log) {
  for (int i = 0; i < model.m_ndTable->GetCount(); ++i) {
    const ND& nd = (*model.m_ndTable)[i];
    if (DeviceCount(model, nd, kDeviceMarks) <= 1) log.Report(nd, message::kFewDevices);
  }
}

void EndVerdict(GLOBAL& verdict, ValidationLog& log) {
  if (verdict.errors == 0) {
    verdict.invalid = 0;
    verdict.valid = 1;
    verdict.check_time = static_cast<quint32>(QDateTime::currentSecsSinceEpoch());
    log.Report(message::kModelIsGood);
    return;
  }
  verdict.invalid = 1;
  verdict.valid = 0;
  log.Report(message::kErrorsRemain, verdict.errors);
}

}  // namespace dtsdb::internal

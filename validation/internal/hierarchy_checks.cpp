/// \file
/// The administrative tree: companies, districts, stations, voltage levels.
#include "validation/internal/checks.h"

namespace dtsdb::internal {
namespace {

constexpr u8 kHighestStationType = 8;

void CheckStation(RowChecks& checks, const ST& st) {
  if (!checks.IsNamed(st)) return;
  checks.IsLinked(st);
  if (st.type > kHighestStationType) checks.log.Report(st, message::kBadStationType);
}

void CheckLevel(RowChecks& checks, const KV& kv) {
  if (!checks.IsNamed(kv)) return;
  checks.IsLinked(kv);
  if (kv.vbase < 0.0F) checks.log.Report(kv, message::kBadVbase);
  if (kv.vmax < 0.0F) checks.log.Report(kv, message::kBadVmax);
  if (kv.vmin < 0.0F) checks.log.Report(kv, message::kBadVmin);
  if (kv.vmax < kv.vmin) checks.log.Report(kv, message::kVmaxBelowVmin);
}

/// The link pass of `Record`, then `check` for every row. No row of the tree can stop a run.
template <class Record, class Check>
bool CheckTable(RowChecks& checks, Check check) {
  if (!checks.Link<ParentRow<Record>>()) return false;
  return checks.ForEachRow<Record>([&](const Record& record, int /*number*/) {
    check(checks, record);
    return true;
  });
}

}  // namespace

bool CheckDistricts(RowChecks& checks) {
  checks.ForEachRow<CO>([&checks](const CO& co, int /*number*/) {
    checks.IsNamed(co);
    return true;
  });
  return CheckTable<DV>(checks, [](RowChecks& steps, const DV& dv) {
    if (steps.IsNamed(dv)) steps.IsLinked(dv);
  });
}

bool CheckStations(RowChecks& checks) { return CheckTable<ST>(checks, CheckStation); }
bool CheckLevels(RowChecks& checks) { return CheckTable<KV>(checks, CheckLevel); }

}  // namespace dtsdb::internal

#include "formats/import/rows.h"

namespace dtsdb::tools {
namespace {

template <class Record>
void Put(DTSDB& model, std::vector<Record>& rows) {
  if (!rows.empty()) TableOf<Record>(model).SetData(rows.data(), static_cast<int>(rows.size()), false);
}

}  // namespace

void Rows::Fill(DTSDB& model) {
  Put(model, co);
  Put(model, dv);
  Put(model, st);
  Put(model, kv);
  Put(model, cb);
  Put(model, zbr);
  Put(model, bus);
  Put(model, un);
  Put(model, ld);
  Put(model, cp);
  Put(model, ln);
  Put(model, xf);
  Put(model, dln);
  Put(model, analog);
  Put(model, status);
}

KV* PartVoltages(KV& from, KV& to, bool isMade) {
  if (from.vbase == to.vbase || from.vbase == 0 || to.vbase == 0) return nullptr;
  KV& changed = isMade ? from : to;
  changed.vbase = 0;
  return &changed;
}

}  // namespace dtsdb::tools

#include "formats/cgmes/import.h"

#include "formats/cgmes/steps.h"

namespace dtsdb::tools::cgmes {
namespace {

template <class Record>
void Put(DTSDB& model, std::vector<Record>& rows) {
  if (!rows.empty()) TableOf<Record>(model).SetData(rows.data(), static_cast<int>(rows.size()), false);
}

void PutAll(DTSDB& model, Rows& rows) {
  Put(model, rows.co);
  Put(model, rows.dv);
  Put(model, rows.st);
  Put(model, rows.kv);
  Put(model, rows.cb);
  Put(model, rows.zbr);
  Put(model, rows.bus);
  Put(model, rows.un);
  Put(model, rows.ld);
  Put(model, rows.cp);
  Put(model, rows.ln);
  Put(model, rows.xf);
  Put(model, rows.dln);
  Put(model, rows.analog);
  Put(model, rows.status);
}

}  // namespace

ImportReport ImportSet(const ProfileSet& set, const ImportOptions& options, DTSDB& model) {
  Mapping mapping(set, options);
  MapContainers(mapping);
  MapMeasurements(mapping);
  MapSwitches(mapping);
  MapLines(mapping);
  MapTransformers(mapping);
  MapDevices(mapping, MapDcLines(mapping));
  PutAll(model, mapping.rows);
  ImportReport report = mapping.account.Report(mapping.connections);
  report.identities = mapping.ids.List();
  return report;
}

ImportReport Import(const std::vector<std::string>& paths, const ImportOptions& options, DTSDB& model) {
  return ImportSet(ReadSet(paths), options, model);
}

}  // namespace dtsdb::tools::cgmes

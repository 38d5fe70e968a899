#include "formats/cgmes/import.h"

#include "formats/cgmes/positions.h"
#include "formats/cgmes/steps.h"
#include "formats/cgmes/topology_parts.h"

namespace dtsdb::tools::cgmes {

ImportReport ImportSet(const ProfileSet& set, const ImportOptions& options, DTSDB& model) {
  Mapping mapping(set, options);
  MapContainers(mapping);
  MapMeasurements(mapping);
  MapSwitches(mapping);
  MapLines(mapping);
  MapTransformers(mapping);
  MapDevices(mapping, MapDcLines(mapping));
  ImportReport report = mapping.account.Report(mapping.connections);
  report.identities = mapping.ids.List();
  report.parts = TopologyParts(mapping);
  AddPositions(mapping, report.parts);
  mapping.rows.FillTables(model);
  return report;
}

ImportReport Import(const std::vector<std::string>& paths, const ImportOptions& options, DTSDB& model,
                    const ReadingProgress& progress) {
  return ImportSet(ReadSet(paths, progress), options, model);
}

}  // namespace dtsdb::tools::cgmes

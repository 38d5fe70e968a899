// Uses the installed pictures: prints the map of the model that it is given, as SVG.
#include <cstdio>

#include "analysis/topology.h"
#include "pictures/grid_map.h"
#include "pictures/svg.h"

int main(int argc, char** argv) {
  using namespace dtsdb;
  analysis::Result<analysis::Model> model = analysis::Model::Open(argc == 2 ? argv[1] : "");
  if (!model || !analysis::WorkOutTopology(*model)) return 1;
  const pictures::GridReader reader(model->Tables(), model->Positions());
  std::puts(pictures::ToSvg(pictures::DrawGrid(reader.Read())).c_str());
  return 0;
}

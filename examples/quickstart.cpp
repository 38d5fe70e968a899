// From a model to its live islands: quickstart MODEL
#include <cstdio>

#include "analysis/topology.h"

int main(int argc, char** argv) {
  using namespace dtsdb::analysis;
  Result<Model> model = Model::Open(argc == 2 ? argv[1] : "grid.obj");  // also a folder of text tables or rtdb:NAME
  const Result<Topology> topology =
      model.and_then([](Model& opened) { return WorkOutTopology(opened); });  // validates it first
  if (!topology) {
    std::fprintf(stderr, "%s\n", topology.error().message.c_str());
    return 1;
  }
  for (const Island& island : topology->islands) {
    std::printf("a live island with the reference %s\n", island.reference.c_str());
  }
}

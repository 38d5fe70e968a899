// The flow task: after each run of the topology task it computes the power through every closed breaker anew, and
// stores it for the console and all others.
//
//     flow_task NAME
//
// Prints a line for each round: "flows", the milliseconds since 1970 of its commit, and how long it took.

#include "breakerflow/cbflow.h"
#include "program.h"

int main(int argc, char** argv) {
  using namespace control_centre;
  EndOnSignals();
  dbDatabase database;
  if (!Open(database, argc, argv, "NAME")) return 2;
  TableWatch<dtsdb::bs> sections(database);  // what a topology run stores
  while (!HasEnded()) {
    if (sections.HasChanged()) {
      const long long begin = Now();
      dtsdb::cbFlow flow(&database);
      flow.loadData();
      flow.calculate();
      flow.storeData();
      std::cout << "flows," << Now() << ',' << Now() - begin << " ms" << std::endl;
    }
    Pause(5);
  }
  database.close();
}

#include "generate/generator.h"

#include "formats/input_rows.h"
#include "generate/equipment.h"
#include "generate/plan_rows.h"
#include "generate/power_balance.h"
#include "generate/random.h"
#include "generate/switching.h"

namespace dtsdb::tools {

void GenerateUtility(DTSDB& database, const GeneratorOptions& options) {
  Random random(options.seed);
  Plan plan;
  PlanStations(plan, options, random);
  PlanLines(plan, options, random);
  PlanSwitching(plan, options, random);
  KeepTogether(plan);
  BalancePowers(plan, random);

  InputRows rows;
  PutPlan(rows, plan);
  rows.FillTables(database);
}

}  // namespace dtsdb::tools

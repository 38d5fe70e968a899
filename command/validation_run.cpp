#include "command/validation_run.h"

#include "analysis/model.h"
#include "command/analysis_result.h"
#include "command/finding_report.h"

namespace dtsdb::tools {

bool IsMarkedGood(const DTSDB& database) { return analysis::Model::Of(database).IsGood(); }

void RequireGood(const DTSDB& database, const ModelName& model) {
  Take(analysis::Model::Of(database, model.Text()).RequireGood(LocaleLanguage()));
}

}  // namespace dtsdb::tools

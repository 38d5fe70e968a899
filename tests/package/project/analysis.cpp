// Uses the installed analysis layer: switches in the model that it is given, and prints how many islands are left.
#include <cstdio>

#include "analysis/switching.h"

int main(int argc, char** argv) {
  using namespace dtsdb::analysis;
  const auto report = [](const Error& error) {
    std::printf("%s: %s\n", CodeName(error.code), error.message.c_str());
    return 1;
  };
  const Result<Model> model = Model::Open(argc == 2 ? argv[1] : "");
  if (!model) return report(model.error());
  Result<Switching> session = Switching::Begin(*model);
  if (!session) return report(session.error());
  const Result<Outcome> outcome = session->Apply("open CB Longtan-132-D1-C1-Q0");
  if (!outcome) return report(outcome.error());
  std::printf("%s, islands: %zu\n", outcome->run.Text().c_str(), outcome->islands.size());
  return 0;
}

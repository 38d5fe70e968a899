// A program that has the breaker flow write its log: of one set that balances and one that doesn't.

#include <QDir>
#include <cstdio>

#include "include/log_sink.h"
#include "tests/breakerflow/breaker_graph.h"
#include "tests/support/helper_program.h"

int main(int argc, char** argv) {
  using namespace dtsdb::test;
  LimitLife();
  const QString argument = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
  if (argument == QLatin1String("--sink")) {
    dtsdb::SetLogSink([](dtsdb::LogKind log, std::string_view bytes) {
      if (log == dtsdb::LogKind::kBreakerFlow) std::fwrite(bytes.data(), 1, bytes.size(), stdout);
    });
  } else if (!argument.isEmpty()) {
    QDir::setCurrent(argument);  // where the log stands was settled before
  }
  BreakerGraph graph({{1, 2}, {3, 4}});
  graph.Inject(1, 5);
  graph.Inject(2, -5);
  graph.Inject(3, 10, 2.5F);
  graph.Probe().Nodes()[4].name = QString::fromLatin1("\xB1\xE4\xB5\xE7\x81");  // GBK, and half a character
  graph.Calculate();
  return PrintLine(graph.P(0) == 5 ? "computed" : "not computed");
}

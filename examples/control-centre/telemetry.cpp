// Telemetry: what comes in from the stations. Here it makes its own events: every PERIOD milliseconds a line is taken
// out of service or put back, as the topology task learns it from the table tptrace, and the measured values move a
// little.
//
//     telemetry NAME PERIOD [COUNT]
//
// Prints a line for each event: "sent", the milliseconds since 1970 of its commit, the line, and what happens to it.

#include <cmath>
#include <ctime>
#include <vector>

#include "program.h"

namespace {

constexpr int kLineOutOfService = 5;  // the code of such a change, see docs/topology.md
constexpr int kFirstRow = 1'000'000;  // numbers of our rows in tptrace; other programs have their own

std::vector<std::string> LinesInService(dbDatabase& database) {
  std::vector<std::string> lines;
  dbCursor<dtsdb::ln> cursor(&database);
  cursor.select();
  for (const dtsdb::ln* row = cursor.first(); row != nullptr; row = cursor.next()) {
    if (row->status == 0) lines.emplace_back(row->id);
  }
  database.commit();
  return lines;
}

/// One transaction: the event, and the measured values beside it.
void Send(dbDatabase& database, int number, const std::string& line, bool isOut) {
  dtsdb::tptrace event;
  event.id = kFirstRow + number;
  event.name = line.c_str();
  event.type = kLineOutOfService;
  event.status = isOut ? 0 : 1;
  event.time = static_cast<nat4>(std::time(nullptr));
  database.insert(event);

  dbCursor<dtsdb::analog> point(&database, dbCursorForUpdate);
  point.select();
  for (dtsdb::analog* row = point.first(); row != nullptr; row = point.next()) {
    row->value *= 1 + 0.001F * static_cast<float>(std::sin(number));
    point.update();
  }
  database.commit();
}

}  // namespace

int main(int argc, char** argv) {
  using namespace control_centre;
  EndOnSignals();
  dbDatabase database;
  if (!Open(database, argc, argv, "NAME PERIOD [COUNT]")) return 2;
  const int period = argc > 2 ? std::stoi(argv[2]) : 1000;
  const int count = argc > 3 ? std::stoi(argv[3]) : INT32_MAX;
  const std::vector<std::string> lines = LinesInService(database);
  for (int i = 0; i < count && !lines.empty() && !HasEnded(); ++i) {
    const std::string& line = lines[static_cast<std::size_t>(i / 2) % lines.size()];
    const bool isOut = i % 2 == 0;
    Send(database, i, line, isOut);
    std::cout << "sent," << Now() << ',' << line << ',' << (isOut ? "REMOVE" : "UNREMOVE") << std::endl;
    Pause(period);
  }
  database.close();
}

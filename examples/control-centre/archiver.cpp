// The archiver: appends each new row of the topology's log, table tpl, to a file. When it is started again it goes on
// behind the last row in the file, so that each row stands there once.
//
//     archiver NAME FILE
//
// A line of the file: the milliseconds since 1970 at which the row was seen, its number, its time, what and what
// happened.

#include <algorithm>
#include <fstream>
#include <vector>

#include "program.h"

namespace {

/// A row of the log; the texts of a cursor's row hold only until it moves.
struct LogRow {
  int number;
  unsigned time;
  std::string name;
  std::string event;
};

/// The number of the last row in the file, -1 for none.
int LastArchived(const char* file) {
  std::ifstream in(file);
  int last = -1;
  for (std::string line; std::getline(in, line);) {
    const std::size_t comma = line.find(',');
    if (comma != std::string::npos) last = std::max(last, std::atoi(line.c_str() + comma + 1));
  }
  return last;
}

/// The rows numbered from `next` on, in one transaction. New ones stand at the end of the table.
std::vector<LogRow> RowsFrom(dbDatabase& database, int next) {
  std::vector<LogRow> rows;
  dbCursor<dtsdb::tpl> cursor(&database);
  cursor.select();
  for (const dtsdb::tpl* row = cursor.last(); row != nullptr && row->id >= next; row = cursor.prev()) {
    rows.push_back({row->id, row->time, row->name, row->event});
  }
  database.commit();
  std::reverse(rows.begin(), rows.end());
  return rows;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace control_centre;
  EndOnSignals();
  dbDatabase database;
  if (!Open(database, argc, argv, "NAME FILE")) return 2;
  const char* const file = argc > 2 ? argv[2] : "archive.csv";
  int next = LastArchived(file) + 1;
  std::ofstream archive(file, std::ios::app);
  TableWatch<dtsdb::tpl> log(database);
  while (!HasEnded()) {
    if (log.HasChanged()) {
      for (const LogRow& row : RowsFrom(database, next)) {
        archive << Now() << ',' << row.number << ',' << row.time << ',' << row.name << ',' << row.event << '\n';
        next = row.number + 1;
      }
      archive.flush();
    }
    Pause(2);
  }
  database.close();
  return archive ? 0 : 3;
}

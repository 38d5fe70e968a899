// A second program for the tests of several processes: reads a stored topology until GLOBAL shows that the model is not
// valid any more. Each reading is one transaction, in which breaker, nodes, sections and log have to agree.
#include <cstdio>
#include <map>
#include <string>

#include "rtdb/volma_rtdb.h"

namespace {

using namespace dtsdb;

/// True when what is stored is that of one run.
bool IsWhole(dbDatabase& database) {
  std::map<std::string, int> sectionOf;
  dbCursor<nd> nodes(&database, dbCursorViewOnly);
  nodes.select();
  for (const nd* row = nodes.get(); row != nullptr; row = nodes.next()) sectionOf[row->id] = row->ibs;

  dbCursor<cb> breakers(&database, dbCursorViewOnly);
  breakers.select();
  bool apart = false;
  for (const cb* row = breakers.get(); row != nullptr; row = breakers.next()) {
    if (row->ibs != sectionOf[row->nd] || row->izbs != sectionOf[row->znd]) return false;
    if (std::string(row->id) != "B") continue;
    apart = row->ibs != row->izbs;
    if (apart != ((row->flags & 0x100) != 0)) return false;
  }
  // A busbar that changes its section is logged; so each run but the first leaves rows, and the last one shows which.
  dbCursor<tpl> log(&database, dbCursorViewOnly);
  if (log.select("order by id") == 0) return true;
  dbCursor<bus> busbars(&database, dbCursorViewOnly);
  busbars.select("id = 'N'");
  const tpl* last = log.last();
  while (last != nullptr && std::string(last->name) != "N") last = log.prev();
  return last == nullptr || (busbars.get() != nullptr && busbars.get()->ibs == last->n2);
}

bool IsOver(dbDatabase& database) {
  dbCursor<global> globals(&database, dbCursorViewOnly);
  return globals.select() > 0 && globals.get()->valid == 0;
}

}  // namespace

int main(int, char** arguments) {
  dbDatabase database;
  if (!database.open(arguments[1], arguments[1])) return 1;
  std::puts("reading");
  std::fflush(stdout);
  bool whole = true;
  bool over = false;
  while (whole && !over) {
    whole = IsWhole(database);
    over = IsOver(database);
    database.commit();
  }
  std::puts(whole ? "whole" : "half a run");
  database.close();
  return 0;
}

#include "command/rtdb_prune.h"

#include <fmt/format.h>

#include <QDateTime>
#include <QTimeZone>
#include <algorithm>
#include <limits>
#include <numeric>

#include "formats/catalog.h"
#include "formats/failure.h"
#include "formats/realtime.h"
#include "formats/text_layout.h"
#include "rtdb/volma_rtdb.h"

namespace dtsdb::tools {
namespace {

constexpr const char* kRtdbPruneFooter =
    "TABLE is one of the logs that grow: TPL, what topology runs have logged, and TPTRACE, the changes that other\n"
    "programs have asked for. --before removes the rows that are stamped before TIME, seconds since 1970 or a time as\n"
    "in 2026-11-21T11:43:42Z, UTC where no offset is given. --keep leaves the N rows stamped last; of those with one\n"
    "stamp the later ones stay. All rows go in one transaction. Rows of TPTRACE that no task has followed up yet are\n"
    "removed like others: leave those of the last minutes.\n\n"
    "Examples:\n"
    "  dtsdb rtdb prune grid TPL --before 2026-11-01\n"
    "  dtsdb rtdb prune grid TPTRACE --keep 10000";

/// What a pruning has left.
struct Pruned {
  int removed = 0;
  int kept = 0;
};

/// The seconds since 1970 of a time as a user writes it.
nat4 TimeOf(const std::string& text) {
  const QString words = QString::fromStdString(text);
  bool isNumber = false;
  qint64 seconds = words.toLongLong(&isNumber);
  if (!isNumber) {
    QDateTime time = QDateTime::fromString(words, Qt::ISODate);
    if (time.timeSpec() == Qt::LocalTime) time = QDateTime(time.date(), time.time(), QTimeZone::utc());
    seconds = time.isValid() ? time.toSecsSinceEpoch() : -1;
  }
  if (seconds < 0 || seconds > std::numeric_limits<nat4>::max()) {
    throw Failure(kExitUsage, Quoted(text) + " is no time; write seconds since 1970 or one as in 2026-11-21T11:43:42Z");
  }
  return static_cast<nat4>(seconds);
}

/// Removes the rows that are stamped before `time`.
template <class Row>
Pruned RemoveBefore(dbDatabase* db, nat4 time) {
  dbCursor<Row> cursor(db, dbCursorForUpdate);
  const int all = cursor.select();
  dbQuery query;
  query = "time < ", time;
  const int removed = cursor.select(query);
  if (removed > 0) cursor.removeAllSelected();
  return {removed, all - removed};
}

/// Removes all rows but the `keep` stamped last; of rows with one stamp the later ones in the table count as later.
template <class Row>
Pruned RemoveAllBut(dbDatabase* db, int keep) {
  dbCursor<Row> cursor(db, dbCursorForUpdate);
  cursor.select();
  std::vector<nat4> times;
  for (const Row* row = cursor.get(); row != nullptr; row = cursor.next()) times.push_back(row->time);
  const int all = static_cast<int>(times.size());
  const int surplus = std::max(0, all - keep);
  std::vector<std::size_t> places(times.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::stable_sort(places.begin(), places.end(), [&](std::size_t a, std::size_t b) { return times[a] < times[b]; });
  std::vector<bool> goes(times.size(), false);
  for (int i = 0; i < surplus; ++i) goes[places[static_cast<std::size_t>(i)]] = true;
  if (surplus == 0) return {0, all};
  cursor.first();
  for (const bool go : goes) {
    if (go) {
      cursor.remove();  // the following row becomes the current one
    } else {
      cursor.next();
    }
  }
  return {surplus, keep};
}

template <class Row>
Pruned PruneTable(dbDatabase* db, const PruneOptions& options) {
  return options.keep ? RemoveAllBut<Row>(db, *options.keep) : RemoveBefore<Row>(db, TimeOf(options.before));
}

int Prune(const PruneOptions& options) {
  const TableKind kind = NamedTable(options.table);
  const std::string name = TableOfKind(kind).name;
  if (kind != KIND_TPL && kind != KIND_TPTRACE) {
    throw Failure(kExitUsage, "table " + name + " is no log; TPL and TPTRACE are");
  }
  if (options.keep.has_value() != options.before.empty()) {
    throw Failure(kExitUsage, "name the rows that go, by either --before TIME or --keep N");
  }
  if (!options.keep) TimeOf(options.before);  // a wrong one ends the command before the database is opened
  { const RealtimeDatabase existing(options.database.Path(), dbDatabase::dbReadOnly); }  // a missing one isn't made
  RealtimeDatabase database(options.database.Path(), dbDatabase::dbAllAccess);
  const Pruned pruned =
      kind == KIND_TPL ? PruneTable<tpl>(database.Db(), options) : PruneTable<tptrace>(database.Db(), options);
  database.Check();
  database.Db()->commit();
  database.Check();
  Report report;
  report.Line(fmt::format("{}: {} removed, {} kept.", name, Counted(pruned.removed, "row"), pruned.kept));
  WriteReport(report, Format::kText);
  return kExitGood;
}

}  // namespace

void AddRtdbPrune(CommandLine& rtdb, Action& action) {
  AddCommand<PruneOptions>(
      rtdb, action, "prune", "Remove old rows of a log",
      [](CommandLine& command, PruneOptions& options) {
        AddDatabaseArgument(command, options.database);
        AddArgument(command, "TABLE", options.table, "The table, TPL or TPTRACE").Required();
        command.Add("--before", options.before, "Remove the rows stamped before TIME").Shown("TIME");
        command.Add("--keep", options.keep, "Leave the N rows stamped last")
            .Shown("N")
            .Within(0, std::numeric_limits<int>::max());
        command.Footer(kRtdbPruneFooter);
        AddExitCodes(command, "the rows are removed");
      },
      Prune);
}

}  // namespace dtsdb::tools

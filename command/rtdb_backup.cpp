#include "command/rtdb_backup.h"

#include <fmt/format.h>

#include <filesystem>
#include <system_error>

#include "formats/failure.h"
#include "formats/realtime.h"
#include "formats/salvage/salvage.h"
#include "formats/text_layout.h"
#include "rtdb/file_name.h"
#include "rtdb/restore.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

struct BackupOptions {
  ModelName database;
  std::string file;
  bool isCompact = false;
  bool replace = false;
};

struct RestoreOptions {
  ModelName database;
  std::string file;
  std::string keptAs;
};

constexpr const char* kBackupFooter =
    "Other programs may go on writing: OUT is the state of the last commit, whole and on the disk before it gets its\n"
    "name. It is a store like any other.\n\n"
    "Examples:\n"
    "  dtsdb rtdb backup grid grid-2026-11-22.fdb\n"
    "  dtsdb rtdb backup grid latest.fdb --compact --replace";

constexpr const char* kRestoreFooter =
    "FILE is checked first, all pages and rows. End the programs that have the database open before. At every moment\n"
    "the old database or the new one stands there.\n\n"
    "Examples:\n"
    "  dtsdb rtdb restore grid-2026-11-22.fdb grid\n"
    "  dtsdb rtdb restore grid-2026-11-22.fdb grid --keep grid-damaged.fdb";

int Backup(const BackupOptions& options) {
  std::error_code error;
  if (!options.replace && fs::exists(options.file, error)) {
    throw Failure(kExitUsage, options.file + " exists already; --replace overwrites it");
  }
  RealtimeDatabase database(options.database.Path(), dbDatabase::dbReadOnly);
  database.Db()->backup(options.file.c_str(), options.isCompact);
  database.Check();
  Report report;
  report.Line(fmt::format("{}: backed up to {}, {} bytes.", options.database.Text(), options.file,
                          fs::file_size(options.file, error)));
  WriteReport(report, Format::kText);
  return kExitGood;
}

int Restore(const RestoreOptions& options) {
  long long rows = 0;
  const auto check = [&rows](const std::string& copy) { return CheckStoreFile(copy, rows); };
  const std::string wrong =
      rtdb::RestoreStore(options.file, rtdb::FileOf(options.database.Path()), options.keptAs, check);
  if (!wrong.empty()) throw Failure(kExitFile, wrong);
  Report report;
  report.Line(fmt::format("{}: restored from {}, {}.", options.database.Text(), options.file, Counted(rows, "row")));
  WriteReport(report, Format::kText);
  return kExitGood;
}

}  // namespace

void AddRtdbBackup(CommandLine& rtdb, Action& action) {
  AddCommand<BackupOptions>(
      rtdb, action, "backup", "Copy the database while it is in use",
      [](CommandLine& command, BackupOptions& options) {
        AddDatabaseArgument(command, options.database);
        AddArgument(command, "OUT", options.file, "The file to be written").Required();
        command.AddFlag("--compact", options.isCompact, "Leave out free pages");
        command.AddFlag("--replace", options.replace, "OUT may exist; it is replaced");
        command.Footer(kBackupFooter);
        AddExitCodes(command, "the copy is there");
      },
      Backup);
  AddCommand<RestoreOptions>(
      rtdb, action, "restore", "Put a backup in the place of the database",
      [](CommandLine& command, RestoreOptions& options) {
        AddArgument(command, "FILE", options.file, "The backup").Required();
        AddDatabaseArgument(command, options.database);
        AddPathOption(command, "--keep", options.keptAs, "The database that was there gets the name FILE");
        command.Footer(kRestoreFooter);
        AddExitCodes(command, "the database is restored");
      },
      Restore);
}

}  // namespace dtsdb::tools

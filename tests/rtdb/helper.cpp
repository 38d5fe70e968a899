// A second program beside the tests of the realtime store: rtdb_helper COMMAND FILE [ARGUMENT]
//
//   make FILE         stores 400 rows of `entry`, all of value 7
//   write FILE        commits one transaction after the other, each of which gives every row of `entry` the same value
//   hold FILE         begins a write transaction, prints "holding" and waits to be killed
//   read FILE         begins a read transaction, prints "reading" and waits to be killed
//   look FILE         the same with a database for reading only
//   check FILE        prints "whole VALUE" if all rows have one value, "torn" if not, "unreadable" if it can't read
//   readonly FILE     checks as a user who may not write, with a database for reading and writing
//   view FILE         checks as a user who may not write, with a database for reading only
//   stay FILE         the same, again after FILE.go has come into being, and again with the database opened anew
//   medium FILE       mounts FILE's folder for reading only, for itself alone, and checks with a database for reading
//                     only; prints "no mount" where it may not mount
//   add FILE ID       inserts a row of `entry`, prints "added"
//   backup FILE OUT BYTES   backs up while no file may grow beyond BYTES
//   restore FILE A B  restores from A and from B in turns until it is killed, prints "restoring" first
//   full FILE BYTES   rewrites the rows with larger texts while no file may grow beyond BYTES

#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "rtdb/restore.h"
#include "samples.h"
#include "tests/support/helper_program.h"

namespace sample {
REGISTER_UNASSIGNED(item);
REGISTER_UNASSIGNED(entry);
REGISTER_UNASSIGNED(relation);
REGISTER_UNASSIGNED(note);
}  // namespace sample

namespace {

using dtsdb::test::PrintAndWait;
using dtsdb::test::PrintLine;
using sample::entry;

void SetAll(dbDatabase& db, int value, char const* text) {
  dbCursor<entry> cursor(&db, dbCursorForUpdate);
  cursor.select();
  for (entry* row = cursor.get(); row != nullptr; row = cursor.next()) {
    row->value = value;
    row->text = text;
    cursor.update();
  }
}

int Write(dbDatabase& db) {
  dbCursor<entry> cursor(&db);
  cursor.select();
  int value = cursor.get() != nullptr ? cursor->value : 0;
  db.commit();
  PrintLine("writing");
  for (;;) {
    ++value;
    SetAll(db, value, std::string(static_cast<std::size_t>(value % 300), 'w').c_str());
    db.commit();
  }
}

int Make(dbDatabase& db) {
  for (int id = 0; id < 400; ++id) {
    entry row;
    row.id = id;
    row.value = 7;
    db.insert(row);
  }
  db.close();
  return 0;
}

int Check(dbDatabase& db) {
  dbCursor<entry> cursor(&db);
  const int count = cursor.select("order by id");
  int met = 0;
  const int value = cursor.get() != nullptr ? cursor->value : -1;
  for (entry* row = cursor.get(); row != nullptr; row = cursor.next(), ++met) {
    if (row->value != value || row->id != met) return PrintLine("torn", 1);
  }
  return met == count && met > 0 ? PrintLine("whole " + std::to_string(value)) : PrintLine("unreadable", 1);
}

int Add(dbDatabase& db, int id) {
  entry row;
  row.id = id;
  const bool added = db.insert(row).getOid() != 0;
  db.close();
  return added ? PrintLine("added") : PrintLine("not added", 1);
}

/// Becomes a user who may write only what everybody may. An ordinary user stays what he is.
bool GiveUpRights() {
  return ::geteuid() != 0 || (::setgroups(0, nullptr) == 0 && ::setegid(65534) == 0 && ::seteuid(65534) == 0);
}

int Look(const char* path) {
  dbDatabase db(dbDatabase::dbReadOnly);
  return db.open("store", path) ? PrintAndWait("reading") : PrintLine("unreadable", 1);
}

int View(const char* path) {
  dbDatabase db(dbDatabase::dbReadOnly);
  return db.open("store", path) ? Check(db) : PrintLine("unreadable", 1);
}

int Stay(const char* path) {
  dbDatabase db(dbDatabase::dbReadOnly);
  if (!db.open("store", path)) return PrintLine("unreadable", 1);
  Check(db);
  db.commit();
  while (::access((std::string(path) + ".go").c_str(), F_OK) != 0) ::usleep(1000);
  Check(db);
  db.close();
  return View(path);
}

int Medium(const char* path) {
  const std::string folder = std::filesystem::path(path).parent_path();
  const int spaces = ::geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER;
  if (::unshare(spaces) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
      ::mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) != 0 ||
      ::mount(nullptr, folder.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0) {
    return PrintLine("no mount", 1);
  }
  return View(path);
}

int Full(dbDatabase& db, const char* bytes) {
  dtsdb::test::LimitFileSize(std::strtoull(bytes, nullptr, 10));
  SetAll(db, 999999, std::string(1500, 'f').c_str());
  db.commit();
  return Check(db);
}

int Backup(dbDatabase& db, const char* out, const char* bytes) {
  dtsdb::test::LimitFileSize(std::strtoull(bytes, nullptr, 10));
  return db.backup(out, false) ? PrintLine("backed up") : 1;
}

int Restore(const char* path, const char* first, const char* second) {
  const auto take = [](const std::string&) { return std::string(); };
  PrintLine("restoring");
  for (;;) {
    for (const char* backup : {first, second}) {
      const std::string wrong = dtsdb::rtdb::RestoreStore(backup, path, "", take);
      if (!wrong.empty()) return PrintLine(wrong, 1);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  dtsdb::test::LimitLife();
  const std::string command = argv[1];
  const bool asOther = command == "readonly" || command == "view" || command == "stay";
  if (asOther && !GiveUpRights()) return 2;
  if (command == "look") return Look(argv[2]);
  if (command == "view") return View(argv[2]);
  if (command == "stay") return Stay(argv[2]);
  if (command == "medium") return Medium(argv[2]);
  if (command == "restore" && argc > 4) return Restore(argv[2], argv[3], argv[4]);
  dbDatabase db;
  if (!db.open("store", argv[2])) return PrintLine("unreadable", 1);
  if (command == "make") return Make(db);
  if (command == "write") return Write(db);
  if (command == "check" || command == "readonly") return Check(db);
  if (command == "add" && argc > 3) return Add(db, std::atoi(argv[3]));
  if (command == "backup" && argc > 4) return Backup(db, argv[3], argv[4]);
  if (command == "full" && argc > 3) return Full(db, argv[3]);
  dbCursor<entry> cursor(&db, command == "hold" ? dbCursorForUpdate : dbCursorViewOnly);
  cursor.select();
  if (command == "read") return PrintAndWait("reading");
  if (command != "hold") return 2;
  SetAll(db, 123456, "held");
  return PrintAndWait("holding");
}

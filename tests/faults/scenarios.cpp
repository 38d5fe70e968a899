#include "tests/faults/scenarios.h"

#include <gtest/gtest.h>

#include <regex>

#include "formats/model_io.h"
#include "formats/realtime.h"
#include "model/objectfile.h"
#include "rtdb/volma_rtdb.h"

namespace dtsdb::tools::test {
namespace {

namespace fs = std::filesystem;

/// The rows of a realtime database: its model as an object file, and how many rows each table has. Of one without rows
/// "nothing".
std::string RowsOf(const fs::path& store) {
  try {
    const ModelName name("rtdb:" + store.string());
    DTSDB model = LoadModel(name);
    model.m_globalTable->Clear();  // the times of runs
    const fs::path copy = "/dev/shm/dtsdb-faults-" + std::to_string(::getpid());
    WriteObjectFile(model, QString::fromStdString(copy.string()));
    std::string rows = dtsdb::test::ReadBytes(copy);
    fs::remove(copy);
    RealtimeDatabase database(store.string(), dbDatabase::dbReadOnly);
    int all = 0;
    ForEachRowClass([&]<class Row> {
      dbCursor<Row> cursor(database.Db(), dbCursorViewOnly);
      const int count = cursor.select();
      rows += std::to_string(count) + " ";
      all += count;
    });
    return all > 0 ? rows : kNothing;
  } catch (const std::exception& error) {
    const std::string message = error.what();
    const bool isEmpty = Contains(message, "a store without tables") || Contains(message, "was stopped in between");
    return isEmpty ? kNothing : "unreadable: " + message;
  }
}

std::string WithoutTimes(const std::string& log) { return std::regex_replace(log, std::regex("[0-9][0-9:.-]+"), ""); }

std::string ContentOf(const fs::path& path) {
  if (path.extension() == ".fdb") return RowsOf(path);
  if (path.extension() == ".log") return WithoutTimes(dtsdb::test::ReadBytes(path));
  if (!fs::is_directory(path)) return dtsdb::test::ReadBytes(path);
  std::string content;
  for (const auto& [name, bytes] : ContentsOf(path)) {
    if (name != "GLOBAL.csv" && name != "TPL.csv") content += name + ": " + bytes + "\n";  // the times of runs
  }
  return "folder " + content;
}

bool IsLock(const fs::path& path) {
  return path.string().ends_with(".fdb-lock") || path.string().ends_with(".fdb-task");
}

/// A copy that no program has open: stores know their lock file, which isn't copied.
void CopyAll(const fs::path& from, const fs::path& to) {
  for (const fs::directory_entry& entry : fs::directory_iterator(to)) fs::remove_all(entry.path());
  for (const fs::directory_entry& entry : fs::directory_iterator(from)) {
    if (!IsLock(entry.path())) fs::copy(entry.path(), to / entry.path().filename(), fs::copy_options::recursive);
  }
}

}  // namespace

Contents ContentsOf(const fs::path& folder) {
  Contents contents;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (!IsLock(entry.path())) contents[entry.path().filename().string()] = ContentOf(entry.path());
  }
  return contents;
}

Scenario::Scenario(std::string name, std::string command, std::vector<std::string> preparation)
    : m_name(std::move(name)), m_command(std::move(command)), m_preparation(std::move(preparation)) {}

QStringList Scenario::Command() const {
  return QString::fromStdString(m_command).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

void Scenario::Prepare() {
  // A store synchronises nothing in a memory file system: its folder is where the tests run.
  if (WritesStore()) qputenv("TMPDIR", fs::current_path().c_str());
  m_place = std::make_shared<Workplace>();
  m_kept = std::make_shared<Workplace>();
  m_place->CopyModel("raw");
  m_place->Write("edits", "add LD id=new kv=乙站220 nd=乙1\n");
  ASSERT_EQ(m_place->Run("validate raw -o good").code, 0);
  for (const std::string& command : m_preparation) {
    const CommandResult made = m_place->Run(command.c_str());
    ASSERT_EQ(made.code, 0) << command << ": " << made.err;
  }
  CopyAll(m_place->Path(), m_kept->Path());
  m_before = ContentsOf(m_place->Path());
}

void Scenario::Restore() const { CopyAll(m_kept->Path(), m_place->Path()); }

const Contents& Scenario::After() {
  if (m_after.empty()) {
    Restore();
    const CommandResult result = m_place->Run(Command());
    EXPECT_EQ(result.code, 0) << m_command << ": " << result.err;
    m_after = ContentsOf(m_place->Path());
    EXPECT_NE(m_before, m_after) << m_command << " writes nothing";
  }
  return m_after;
}

void PrintTo(const Scenario& scenario, std::ostream* stream) { *stream << scenario.Name(); }

std::vector<Scenario> WritingCommands() {
  const std::string old = "generate --stations 1 -o ";
  return {
      {"ObjectFile", "convert good out.obj", {old + "out.obj"}},
      {"NewObjectFile", "convert good out.obj"},
      {"TextTables", "convert good out", {old + "out/"}},
      {"NewTextTables", "convert good out"},
      {"Xiidm", "convert good out.xiidm.gz", {old + "out.xiidm.gz"}},
      {"Log", "validate raw -o out --log out.log", {old + "out/", "validate good --log out.log"}},
      {"Edit", "edit good --script edits -o out", {old + "out/"}},
      {"Switch", "switch good open CB 乙开关 -o out --undo undo.txt", {old + "out/"}},
      {"Report", "report good -o page.html", {"report raw -o page.html"}},
      {"Draw", "draw good --grid -o grid.svg"},
      {"Generate", "generate --stations 1 -o out.obj"},
      {"NewStore", "convert good rtdb:out"},
      {"Store", "convert good rtdb:out", {old + "rtdb:out"}},
      {"Put", "rtdb put out STATUS id=s value=1", {"convert good rtdb:out"}},
      {"Run", "run rtdb:out --once", {"convert good rtdb:out"}},
      {"Prune",
       "rtdb prune out TPTRACE --keep 0",
       {"convert good rtdb:out", "rtdb put out TPTRACE id=1 type=1 name=x"}},
  };
}

}  // namespace dtsdb::tools::test

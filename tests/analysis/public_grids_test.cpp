// The three public grids, switched by the command: every breaker, every branch and every end, out and back, each
// followed up by a run of its own and compared with a full run.
//
// Of the largest grid each 25th component is switched, and all of them when DTSDB_SWITCH_ALL is set in the environment.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "formats/field_text.h"
#include "tests/analysis/public_grid.h"
#include "tests/support/command_runner.h"
#include "tests/support/places.h"

namespace dtsdb::test {
namespace {

constexpr int kPerCall = 200;

/// Scripts that switch each `step`th component out and back.
class Scripts {
 public:
  explicit Scripts(int step) : m_step(step) {}

  template <class Component>
  void Add(const char* off, const char* on, tTable<Component>& table, const char* end = "") {
    for (int i = 0; i < table.GetCount(); ++i) {
      if (m_seen++ % m_step != 0) continue;
      const std::string what =
          std::string(" ") + Component::kTableName + " '" + tools::IdText(table[i].id) + "' " + end + "\nrun\n";
      if (m_count++ % kPerCall == 0) m_texts.emplace_back();
      m_texts.back() += off + what + on + what;
    }
  }

  template <class Branch>
  void AddBranches(tTable<Branch>& table) {
    Add("out", "in", table);
    Add("break", "join", table, "from");
    Add("break", "join", table, "to");
  }

  /// The texts, one for each call of the command.
  const std::vector<std::string>& Texts() const { return m_texts; }
  int Count() const { return m_count; }

 private:
  int m_step;
  int m_seen = 0;
  int m_count = 0;
  std::vector<std::string> m_texts;
};

/// What the reports of several calls count together, the runs at their starts left out.
struct Totals {
  int runs = 0;
  int incremental = 0;
  int failed = 0;
  int differences = 0;

  void Take(const tools::test::CommandResult& result) {
    ASSERT_EQ(result.code, 0) << result.err;
    const auto report = nlohmann::json::parse(result.out);
    differences += static_cast<int>(report["differences"].size());
    for (const auto& run : report["runs"]) {
      if (run["run"] == 0) continue;
      const std::string kind = run["kind"];
      ++runs;
      incremental += kind == "incremental" ? 1 : 0;
      failed += kind.starts_with("failed") ? 1 : 0;
    }
  }
};

void ExpectNoDifference(const char* name, int step) {
  const QString folder = QString::fromStdString(DataPath(std::string("relicapgrid/") + name));
  PublicGrid grid(folder);
  ASSERT_EQ(grid.Error().toStdString(), "");
  ModelBuilder& model = grid.Model();
  ASSERT_TRUE(model.Validate());

  Scripts scripts(std::getenv("DTSDB_SWITCH_ALL") != nullptr ? 1 : step);
  scripts.Add("open", "close", model.Table<CB>());
  scripts.AddBranches(model.Table<LN>());
  scripts.AddBranches(model.Table<XF>());
  scripts.AddBranches(model.Table<ZBR>());
  const tools::test::Workplace here;
  ASSERT_TRUE(model.Db().WriteObject(QString::fromStdString(here / "grid.obj")));
  Totals totals;
  for (const std::string& text : scripts.Texts()) {
    here.Write("script.txt", text);
    totals.Take(here.Run("switch grid.obj --script script.txt --verify --format json"));
  }
  EXPECT_EQ(totals.failed, 0);
  EXPECT_EQ(totals.differences, 0);
  std::printf("%s: %d breakers, branches and ends, %d runs, %d of them incremental, %d failed, %d differences\n", name,
              scripts.Count(), totals.runs, totals.incremental, totals.failed, totals.differences);
}

TEST(PublicGrids, BelgoviaIsSwitchedAsFullRunsHaveIt) { ExpectNoDifference("belgovia", 1); }
TEST(PublicGrids, GaliaIsSwitchedAsFullRunsHaveIt) { ExpectNoDifference("galia", 1); }
TEST(PublicGrids, EspheimIsSwitchedAsFullRunsHaveIt) { ExpectNoDifference("espheim", 25); }

}  // namespace
}  // namespace dtsdb::test

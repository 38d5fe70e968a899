// The output of the command on a small network, kept in tests/command/golden.
//
//     station 甲站, 甲站220                          station 乙站, 乙站220
//
//     甲机 甲母                                               乙母 乙荷 乙容 (off)
//       甲1 --甲开关-- 甲2 ------- 甲乙线 ------- 乙2 --乙开关-- 乙1 --乙联络 (open)-- 乙3
//                                                                                    乙备
//
// The network "solved" has the flows of the line, and a second breaker 甲旁路 between 甲1 and 甲2.
//
// One live island of two sections: {甲1, 甲2} and {乙1, 乙2}. Node 乙3 with its load lies in no section.
//
// With DTSDB_UPDATE_GOLDEN=1 in the environment the files are written anew instead of compared.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Workplace;

struct Golden {
  const char* file;       ///< in tests/command/golden
  const char* arguments;  ///< of the command, run where the network is the folder m
  int code;
};

void PrintTo(const Golden& golden, std::ostream* out) { *out << golden.arguments; }

class GoldenOutput : public testing::TestWithParam<Golden> {};

TEST_P(GoldenOutput, IsAsKept) {
  const Workplace here;
  here.CopyModel("m");
  here.CopyModel("changed");
  here.Write("changed/UN.csv",
             "id,kv,nd,pmax,pcur,p,q\n甲机,甲站220,甲1,330,180,182.5,31.25\n甲二机,甲站220,甲1,60,0,0,-0\n");
  here.CopyModel("solved");
  here.Write("solved/CB.csv", here.Read("m/CB.csv") + "甲旁路,甲站220,甲2,甲1,1\n");
  here.Write("solved/LN.csv",
             "id,dv,st,zst,kv,zkv,nd,znd,p,q,zp,zq\n"
             "甲乙线,东区,甲站,乙站,甲站220,乙站220,甲2,乙2,182.5,31.25,120,22\n");
  here.Write("faulty/CB.csv", here.Read("m/CB.csv") + "坏开关,甲站220,,甲9,5\n");
  for (const char* table : {"CO", "DV", "ST", "KV"}) {
    here.Write(std::string("faulty/") + table + ".csv", here.Read(std::string("m/") + table + ".csv"));
  }
  here.Write("edits.txt",
             "# a load behind a breaker of its own\n"
             "add CB id=乙二开关 kv=乙站220 nd=乙1 znd=乙4 flags=1\n"
             "add LD id=乙二荷 kv=乙站220 nd=乙4 p=12.5\n"
             "remove CP 乙容\n");
  here.Write("refused.txt",
             "add LD id=乙荷 kv=乙站220 nd=乙1\n"
             "remove CB 乙开\n"
             "add ST id=丙站 dv=东区 type=1\n");
  here.Write("not_good.txt", "remove ST 乙站\n");

  const CommandResult result = here.Run(GetParam().arguments);
  EXPECT_EQ(result.code, GetParam().code);
  EXPECT_EQ(result.err, "");
  const std::string path = dtsdb::test::SourcePath("tests/command/golden/") + GetParam().file;
  if (std::getenv("DTSDB_UPDATE_GOLDEN") != nullptr) {
    dtsdb::test::WriteBytes(path, result.out);
    return;
  }
  EXPECT_EQ(result.out, dtsdb::test::ReadBytes(path));
}

constexpr Golden kGolden[] = {
    {"validate.txt", "validate m", 0},
    {"validate_faulty.txt", "validate faulty", 1},
    {"validate_faulty.json", "validate faulty --format json", 1},
    {"validate_faulty.csv", "validate faulty --format csv", 1},
    {"validate_faulty_kinds.csv", "validate faulty --format csv --sheet kinds", 1},
    {"validate_faulty_zh.txt", "validate faulty --lang zh", 1},
    {"validate_faulty_zh.json", "validate faulty --lang zh --format json", 1},
    {"validate_all.txt", "validate faulty --all", 1},
    {"topology.txt", "topology m", 0},
    {"topology.json", "topology m --format json", 0},
    {"topology_islands.csv", "topology m --format csv", 0},
    {"topology_contents.csv", "topology m --format csv --sheet contents", 0},
    {"switch.txt", "switch m open CB 甲开关 run out LN 甲乙线 run in LN 甲乙线 close CB 甲开关 --verify", 0},
    {"switch_ends.txt", "switch m break LN 甲乙线 from run break LN 甲乙线 to run join LN 甲乙线 from --verify", 0},
    {"switch_as_is.txt",
     "switch m break LN 甲乙线 from run break LN 甲乙线 to run join LN 甲乙线 from --as-is --verify", 1},
    {"switch.json", "switch m close CB 乙联络 off UN 甲机 --format json", 0},
    {"switch_log.csv", "switch m close CB 乙联络 off UN 甲机 --format csv --sheet log", 0},
    {"screen.txt", "screen m", 0},
    {"screen.json", "screen m --format json", 0},
    {"screen.csv", "screen m --format csv", 0},
    {"screen_lost.txt", "screen m --kinds LN --sheet lost", 0},
    {"screen_pairs.csv", "screen m --sample 3 --format csv", 0},
    {"draw.svg", "draw m --station 甲站", 0},
    {"draw_flows.svg", "draw solved --station 甲站 --flows", 0},
    {"draw_grid.svg", "draw solved --grid --flows", 0},
    {"flow.txt", "flow solved", 0},
    {"flow.json", "flow solved --format json", 0},
    {"flow_sets.csv", "flow solved --format csv", 0},
    {"flow_breakers.csv", "flow solved --format csv --sheet breakers", 0},
    {"flow_not_balanced.txt", "flow m", 1},
    {"edit.txt", "edit m --script edits.txt --dry-run", 0},
    {"edit.json", "edit m --script edits.txt --dry-run --format json", 0},
    {"edit_refused.txt", "edit m --script refused.txt --dry-run", 1},
    {"edit_refused.json", "edit m --script refused.txt --dry-run --format json", 1},
    {"edit_refused.csv", "edit m --script refused.txt --dry-run --format csv", 1},
    {"edit_refused_zh.txt", "edit m --script refused.txt --dry-run --lang zh", 1},
    {"edit_not_good.txt", "edit m --script not_good.txt --dry-run", 1},
    {"edit_not_good_zh.txt", "edit m --script not_good.txt --dry-run --lang zh", 1},
    {"info.txt", "info m", 0},
    {"info.json", "info m --format json", 0},
    {"info_fields.txt", "info --fields CB", 0},
    {"dump.txt", "dump m CB", 0},
    {"dump.json", "dump m KV --id 甲站220 --format json", 0},
    {"dump.csv", "dump m KV --format csv", 0},
    {"dump_identity.txt", "dump m --id 乙站", 0},
    {"diff.txt", "diff m changed", 1},
    {"diff.json", "diff m changed --format json", 1},
    {"diff.csv", "diff m changed --format csv", 1},
};

std::string GoldenName(const testing::TestParamInfo<Golden>& test) {
  std::string name = test.param.file;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Command, GoldenOutput, testing::ValuesIn(kGolden), GoldenName);

}  // namespace
}  // namespace dtsdb::tools

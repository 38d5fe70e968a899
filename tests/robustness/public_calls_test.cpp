// Any public member, called in any order on any model: nothing crashes, hangs or touches foreign memory.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <regex>
#include <set>
#include <string>

#include "fuzz/any_model.h"
#include "fuzz/public_calls.h"

namespace dtsdb::fuzz {
namespace {

constexpr int kCallsOfAWorkplace = 200;

/// How many calls are made: some thousands, or what DTSDB_PUBLIC_CALLS asks for.
long CallCount() {
  const char* const asked = std::getenv("DTSDB_PUBLIC_CALLS");
  return asked != nullptr ? std::atol(asked) : 3000;
}

/// The workplace with which the calls begin: that of a run that ended early, for repeating it.
unsigned FirstSeed() {
  const char* const asked = std::getenv("DTSDB_PUBLIC_CALLS_SEED");
  return asked != nullptr ? static_cast<unsigned>(std::atol(asked)) : 0;
}

std::string RandomBytes(unsigned seed) {
  std::mt19937 random(seed);
  std::string bytes(std::size_t{1} << 15, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

TEST(PublicCalls, AnyOrderOnAnyModelEndsWell) {
  ASSERT_TRUE(Silence());
  const std::vector<PublicCall> calls = AllPublicCalls();
  const bool traces = std::getenv("DTSDB_PUBLIC_CALLS_TRACE") != nullptr;
  std::set<std::string> made;
  unsigned seed = FirstSeed();
  long left = CallCount();
  for (; left > 0; ++seed) {
    if (CallCount() > 3000) std::cerr << "workplace " << seed << ", " << left << " calls left" << std::endl;
    const std::string bytes = RandomBytes(seed);
    ByteSource source(bytes);
    Workplace workplace(source);
    for (int i = 0; i < kCallsOfAWorkplace && left > 0; ++i, --left) {
      const PublicCall& call = calls[static_cast<std::size_t>(source.Below(static_cast<int>(calls.size())))];
      if (traces) std::cerr << call.member << std::endl;
      call.make(workplace);
      made.insert(call.member);
    }
  }
  EXPECT_GT(made.size(), calls.size() / 2);
}

/// The names of the members that the first public part of a class declares in its header.
std::set<std::string> PublicMembers(const std::string& header, const std::string& name) {
  std::ifstream file(DTSDB_SOURCE_DIR "/" + header);
  const std::regex beginning("^class (DTSDB_\\w+ )?" + name + "( .*)?\\{$");
  const std::regex member("^  [^ /}].*?\\b(operator[^ (]+|\\w+)\\(");
  std::set<std::string> members;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    inside = inside || std::regex_match(line, beginning);
    if (!inside) continue;
    if (line == " private:" || line == " protected:") break;
    std::smatch match;
    const bool isDeleted = line.find("= delete") != std::string::npos;
    if (!isDeleted && std::regex_search(line, match, member)) members.insert(name + "::" + match[1].str());
  }
  return members;
}

TEST(PublicCalls, EveryPublicMemberIsCalledOrLeftOutForAReason) {
  std::set<std::string> known;
  for (const PublicCall& call : AllPublicCalls()) known.insert(call.member);
  for (const LeftOut& member : CallsLeftOut()) known.insert(member.member);
  const std::pair<const char*, const char*> classes[] = {
      {"topology/tp.h", "TP"},    {"validation/nmd.h", "NMD"},   {"breakerflow/cbflow.h", "cbFlow"},
      {"model/dtsdb.h", "DTSDB"}, {"include/table.h", "tTable"}, {"rtdb/database.h", "dbDatabase"},
  };
  for (const auto& [header, name] : classes) {
    const std::set<std::string> members = PublicMembers(header, name);
    EXPECT_GT(members.size(), 5U) << header;
    for (const std::string& member : members) EXPECT_TRUE(known.contains(member)) << member;
  }
}

}  // namespace
}  // namespace dtsdb::fuzz

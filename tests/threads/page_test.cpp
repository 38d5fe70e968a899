// A served database: viewers ask and try things out while a program changes it.

#include "page/site.h"

#include <gtest/gtest.h>

#include <atomic>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/page/live_place.h"
#include "tests/threads/side_by_side.h"

namespace dtsdb::page::test {
namespace {

constexpr const char* kToken = "0123456789abcdef";

class ServedDatabase : public LivePlace {
 protected:
  static PageRequest Request(const std::string& path) {
    PageRequest request;
    request.path = std::string("/") + kToken + "/api/" + path;
    request.host = "127.0.0.1:8017";
    return request;
  }
  /// Tries out what the others don't see.
  static PageRequest Trial(int viewer, int version) {
    PageRequest request = Request("whatif");
    request.method = "POST";
    request.body = nlohmann::json({{"viewer", "viewer000000000" + std::to_string(viewer)},
                                   {"version", version},
                                   {"events", {{{"table", "CB"}, {"id", "B1"}, {"open", true}}}}})
                       .dump();
    return request;
  }
};

TEST_F(ServedDatabase, AnswersViewersWhileItChanges) {
  Store();
  Follow();
  Site site(*live, Access(kToken, "127.0.0.1"));
  std::atomic<bool> hasEnded = false;
  dtsdb::test::SideBySide(dtsdb::test::kThreads, [&](int thread) {
    if (thread == 0) {
      for (int round = 0; round < 6; ++round) {
        Switch(1, round % 2 == 1, "B2");
        live->Look();
      }
      hasEnded = true;
      return;
    }
    const auto own = hub.Open();
    do {
      for (const char* const path : {"model", "state", "findings", "grid", "station"}) {
        PageRequest request = Request(path);
        request.parameters["id"] = "S1";
        EXPECT_EQ(site.AnswerTo(request).status, 200) << path;
      }
      const int tried = site.AnswerTo(Trial(thread, live->Now()->Version())).status;
      EXPECT_TRUE(tried == 200 || tried == 409) << tried;
      if (own != nullptr) TakeAll(*own);
    } while (!hasEnded);
  });
  EXPECT_EQ(live->Now()->Version(), 7);
}

}  // namespace
}  // namespace dtsdb::page::test

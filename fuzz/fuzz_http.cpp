// Any bytes as a request to the page's server: each is answered with a status, whatever stands in path, parameters,
// headers and body.
//
// The first byte has the method, whether the path begins with the token, and whether Host and Origin are the server's
// own; then follow, each ended by a zero byte, path, host, origin, names and values of parameters, and an empty text
// before the body.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "fuzz/any_model.h"
#include "fuzz/byte_source.h"
#include "fuzz/require.h"
#include "page/live_model.h"
#include "page/site.h"

namespace {

using namespace dtsdb;

constexpr const char* kToken = "0123456789abcdef";
constexpr const char* kHost = "127.0.0.1:8017";

page::Site& SmallSite() {
  static const std::unique_ptr<page::LiveModel> model = [] {
    fuzz::Silence();
    DTSDB tables;
    fuzz::FillSmallModel(tables);
    auto shown = page::LiveModel::Show(analysis::Model::Of(tables), {"grid", "object file", false});
    fuzz::Require(shown.has_value(), "the small model is shown");
    return std::move(*shown);
  }();
  static page::Site site(*model, page::Access(kToken, "127.0.0.1"));
  return site;
}

page::PageRequest RequestOf(fuzz::ByteSource bytes) {
  page::PageRequest request;
  const int choice = bytes.Byte();
  request.method = (choice & 1) != 0 ? "POST" : "GET";
  request.path = ((choice & 2) != 0 ? std::string("/") + kToken : std::string()) + std::string(bytes.Text());
  const std::string host(bytes.Text());
  request.host = (choice & 4) != 0 ? kHost : host;
  const std::string origin(bytes.Text());
  request.origin = (choice & 8) != 0 ? std::string("http://") + kHost : origin;
  while (!bytes.IsEmpty()) {
    const std::string name(bytes.Text());
    if (name.empty()) break;
    request.parameters[name] = bytes.Text();
  }
  request.body = bytes.Rest();
  return request;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const page::PageRequest request = RequestOf(fuzz::ByteSource(data, size));
  page::Site& site = SmallSite();
  if (request.body.size() > site.Limits().body) return 0;
  site.TakesBody(request);
  const page::PageAnswer answer = site.AnswerTo(request);
  // 503: there are as many viewers as there may be.
  fuzz::Require((answer.status >= 200 && answer.status < 500) || answer.status == 503, "no fault of the server");
  return 0;
}

#include "page/assets.h"

#include <algorithm>

#include "page/internal/asset_bytes.h"

namespace dtsdb::page {
namespace {

std::string_view BytesOf(std::span<const unsigned char> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

std::span<const Asset> Assets() {
  static const Asset kAssets[] = {
      {"index.html", "text/html; charset=utf-8", BytesOf(internal::IndexHtml())},
      {"page.css", "text/css; charset=utf-8", BytesOf(internal::PageCss())},
      {"page.js", "text/javascript; charset=utf-8", BytesOf(internal::PageJs())},
  };
  return kAssets;
}

const Asset* FindAsset(std::string_view name) {
  const std::span<const Asset> assets = Assets();
  const auto found = std::find_if(assets.begin(), assets.end(), [&](const Asset& asset) { return asset.name == name; });
  return found != assets.end() ? &*found : nullptr;
}

}  // namespace dtsdb::page

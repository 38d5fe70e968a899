#include "page/access.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <random>

namespace dtsdb::page {
namespace {

constexpr std::size_t kShortestToken = 16;
constexpr std::size_t kLongestToken = 128;

bool IsLetterOrDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ToLower);
  return text;
}

bool IsAddressInDigits(const std::string& host) {
  std::array<unsigned char, sizeof(in6_addr)> address{};
  return ::inet_pton(AF_INET, host.c_str(), address.data()) == 1 ||
         ::inet_pton(AF_INET6, host.c_str(), address.data()) == 1;
}

/// The host of "host", "host:port", "[address]" or "[address]:port"; empty for anything else.
std::string WithoutPort(const std::string& host) {
  const bool isBracketed = !host.empty() && host.front() == '[';
  const std::size_t end = isBracketed ? host.find(']') : host.find(':');
  if (isBracketed && end == std::string::npos) return "";
  const std::size_t behind = isBracketed ? end + 1 : std::min(end, host.size());
  const std::string port = host.substr(behind);
  const bool isPort = port.empty() || (port.front() == ':' && std::all_of(port.begin() + 1, port.end(),
                                                                          [](char c) { return c >= '0' && c <= '9'; }));
  if (!isPort) return "";
  return isBracketed ? host.substr(1, end - 1) : host.substr(0, behind);
}

}  // namespace

std::string RandomToken() {
  std::random_device random;
  std::string token;
  for (int i = 0; i < 4; ++i) token += fmt::format("{:08x}", random());
  return token;
}

std::string WhyNoToken(const std::string& token) {
  if (token.size() < kShortestToken || token.size() > kLongestToken) {
    return fmt::format("a token has {} to {} characters", kShortestToken, kLongestToken);
  }
  const bool isGood =
      std::all_of(token.begin(), token.end(), [](char c) { return IsLetterOrDigit(c) || c == '-' || c == '_'; });
  return isGood ? "" : "a token has letters, digits, '-' and '_' only";
}

bool IsViewerName(std::string_view name) {
  return name.size() >= 16 && name.size() <= 32 && std::all_of(name.begin(), name.end(), IsLetterOrDigit);
}

bool Access::IsToken(std::string_view token) const {
  if (token.size() != m_token.size()) return false;
  unsigned difference = 0;
  for (std::size_t i = 0; i < token.size(); ++i) {
    difference |= static_cast<unsigned char>(token[i]) ^ static_cast<unsigned char>(m_token[i]);
  }
  return difference == 0;
}

bool Access::IsOwnHost(const std::string& host) const {
  const std::string name = Lower(WithoutPort(host));
  if (name.empty()) return false;
  return name == "localhost" || name == Lower(m_address) || IsAddressInDigits(name);
}

bool Access::IsOwnOrigin(const std::string& origin, const std::string& host) {
  return origin.empty() || Lower(origin) == "http://" + Lower(host);
}

std::string HostAndPort(const std::string& host, int port) {
  const bool isV6 = host.find(':') != std::string::npos;
  return fmt::format("{}{}{}:{}", isV6 ? "[" : "", host, isV6 ? "]" : "", port);
}

}  // namespace dtsdb::page

/// \file
/// Who may use the page: whoever knows its token, under an address that no foreign name can stand for.
#pragma once

#include <string>
#include <string_view>

namespace dtsdb::page {

/// A token of 128 random bits, in hexadecimal digits.
std::string RandomToken();

/// What is wrong with a token that a user has chosen, in one line; empty for a good one. It has 16 to 128 letters,
/// digits, '-' and '_'.
std::string WhyNoToken(const std::string& token);

/// True for the name by which the page calls a viewer's copy: 16 to 32 letters and digits.
bool IsViewerName(std::string_view name);

/// The rules of one server.
class Access {
 public:
  /// `address` is where the server listens.
  Access(std::string token, std::string address) : m_token(std::move(token)), m_address(std::move(address)) {}

  const std::string& Token() const { return m_token; }

  /// True for the token, in a time that doesn't depend on where `token` differs from it.
  bool IsToken(std::string_view token) const;

  /// True when the header Host names an address in digits, localhost or where the server listens. A foreign page whose
  /// name has been turned to this machine has its own name there.
  bool IsOwnHost(const std::string& host) const;

  /// True when the header Origin is missing, or names the page that Host names.
  static bool IsOwnOrigin(const std::string& origin, const std::string& host);

 private:
  std::string m_token;
  std::string m_address;
};

/// A host and a port as they stand in an address: those of IPv6 are set in brackets.
std::string HostAndPort(const std::string& host, int port);

}  // namespace dtsdb::page

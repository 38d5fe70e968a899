/// \file
/// Where a NATS server is and what it asks for, as people write it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dtsdb::relay {

/// A server, or the servers of a cluster. Paths are of PEM files, and of a file of credentials; empty for none.
struct NatsServer {
  std::string urls;  ///< nats://[LOGIN@]HOST[:PORT] or tls://..., several parted by commas
  std::string credentials;
  std::string authority;    ///< certificates of those who sign the server's
  std::string certificate;  ///< the program's own
  std::string key;
};

/// How a program logs in by the URL: USER:PASSWORD or a TOKEN.
struct NatsLogin {
  std::string name;                     ///< the user, or the token
  std::optional<std::string> password;  ///< none behind a token

  bool operator==(const NatsLogin&) const = default;
};

/// URLs taken apart. The login stands apart, since no message, log or note may contain it.
struct ServerUrls {
  std::vector<std::string> urls;  ///< SCHEME://HOST[:PORT] each
  std::optional<NatsLogin> login;
  bool isTls = false;  ///< one of them asks for TLS

  /// For people: the URLs without the login, parted by commas.
  std::string Shown() const;
};

/// Takes apart what `text` contains. A % with two hexadecimal digits in a login is the byte that they name. Throws
/// std::invalid_argument whose text has what is wrong and what to do, without the login.
ServerUrls ParseServerUrls(std::string_view text);

}  // namespace dtsdb::relay

/// \file
/// Keys and credentials of NATS, made by openssl: an operator, an account, users who log in by a file of credentials.
#pragma once

#include <QByteArray>
#include <string>
#include <utility>

#include "tests/support/command_runner.h"

namespace dtsdb::test {

/// RFC 4648, without padding.
inline std::string Base32(const std::string& bytes) {
  std::string text;
  unsigned bits = 0;
  int count = 0;
  for (const char byte : bytes) {
    bits = bits << 8 | static_cast<unsigned char>(byte);
    for (count += 8; count >= 5; count -= 5) text += "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567"[bits >> (count - 5) & 31];
  }
  if (count > 0) text += "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567"[bits << (5 - count) & 31];
  return text;
}

/// The bytes with their CRC-16 (XMODEM) behind them, as a text: the form of all keys of NATS.
inline std::string KeyText(const std::string& bytes) {
  unsigned crc = 0;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned>(static_cast<unsigned char>(byte)) << 8;
    for (int i = 0; i < 8; ++i) crc = (crc & 0x8000U) != 0 ? crc << 1 ^ 0x1021U : crc << 1;
  }
  return Base32(bytes + static_cast<char>(crc & 0xFF) + static_cast<char>(crc >> 8 & 0xFF));
}

/// A pair of keys that lies in a folder, and what it signs.
class NatsKey {
 public:
  /// `kind` is the first letter of the public key: O, A or U. The pair lies in `file`.
  NatsKey(const tools::test::Workplace& here, char kind, std::string file) : m_here(here), m_file(std::move(file)) {
    OpenSsl("genpkey -algorithm ed25519 -out " + m_file);
    OpenSsl("pkey -in " + m_file + " -outform DER -out secret.der");
    OpenSsl("pkey -in " + m_file + " -pubout -outform DER -out public.der");
    const unsigned prefix = static_cast<unsigned>(kind - 'A') << 3;
    const auto byte = [](unsigned value) { return std::string(1, static_cast<char>(value)); };
    m_name = KeyText(byte(prefix) + LastBytes("public.der"));
    m_seed = KeyText(byte(('S' - 'A') << 3 | prefix >> 5) + byte((prefix & 31) << 3) + LastBytes("secret.der"));
  }

  const std::string& Name() const { return m_name; }
  const std::string& Seed() const { return m_seed; }

  /// A token that claims `nats` (JSON) for the key named `subject`.
  std::string Sign(const std::string& subject, const std::string& nats) const {
    const std::string content = Base64(R"({"typ":"JWT","alg":"ed25519-nkey"})") + "." +
                                Base64(R"({"jti":"1","iat":1,"name":"test","iss":")" + m_name + R"(","sub":")" +
                                       subject + R"(","nats":)" + nats + "}");
    m_here.Write("content", content);
    OpenSsl("pkeyutl -sign -rawin -in content -out signature -inkey " + m_file);
    return content + "." + Base64(m_here.Read("signature"));
  }

 private:
  static std::string Base64(const std::string& bytes) {
    return QByteArray::fromStdString(bytes)
        .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals)
        .toStdString();
  }
  void OpenSsl(const std::string& arguments) const {
    const auto result = m_here.RunOther(QStringLiteral("openssl"), QString::fromStdString(arguments).split(u' '));
    EXPECT_EQ(result.code, 0) << arguments << ": " << result.err;
  }
  std::string LastBytes(const std::string& file) const {
    const std::string bytes = m_here.Read(file);
    return bytes.substr(bytes.size() - 32);
  }

  const tools::test::Workplace& m_here;
  std::string m_file;
  std::string m_name;
  std::string m_seed;
};

/// A file of credentials: what a user is, signed, and the secret by which he shows that it is him.
inline std::string CredentialsFile(const std::string& token, const std::string& seed) {
  return "-----BEGIN NATS USER JWT-----\n" + token + "\n------END NATS USER JWT------\n\n" +
         "-----BEGIN USER NKEY SEED-----\n" + seed + "\n------END USER NKEY SEED------\n";
}

}  // namespace dtsdb::test

#include "relay/nats_connection.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <thread>
#include <vector>

#include "relay/stream.h"

namespace dtsdb::relay {
namespace {

constexpr int kReconnectWait = 200;  // milliseconds
constexpr int kConnectWait = 3000;   // likewise
constexpr int kConnectTries = 3;
constexpr int kLivePending = 64;  // messages that came and aren't asked for yet

using Options = std::unique_ptr<natsOptions, NatsDestroyer<natsOptions_Destroy>>;

StreamError::Kind KindOf(natsStatus status, jsErrCode code) {
  if (code == JSStreamWrongLastSequenceErr) return StreamError::Kind::kMoved;
  switch (status) {
    case NATS_CONNECTION_AUTH_FAILED:
    case NATS_NOT_PERMITTED:
    case NATS_INVALID_ARG:
    case NATS_SSL_ERROR:
    case NATS_SECURE_CONNECTION_WANTED:
    case NATS_PROTOCOL_ERROR:
    case NATS_MAX_PAYLOAD:
      return StreamError::Kind::kRefused;
    default:
      return StreamError::Kind::kUnreachable;
  }
}

/// The client's last error without the place in its code, "(conn.c:733): ".
std::string Detail(natsStatus status) {
  const char* const last = nats_GetLastError(nullptr);
  constexpr std::string_view kNothing = ": (null)";
  std::string detail = last != nullptr && *last != '\0' ? last : natsStatus_GetText(status);
  if (detail.ends_with(kNothing)) detail.resize(detail.size() - kNothing.size());
  const std::size_t end = detail.starts_with('(') ? detail.find("): ") : std::string::npos;
  return end == std::string::npos ? detail : detail.substr(end + 3);
}

/// What went wrong and what to do.
std::string Reason(natsStatus status) {
  switch (status) {
    case NATS_CONNECTION_AUTH_FAILED:
      return "the server refuses the login (" + Detail(status) + "): check the URL's user and password, or --creds";
    case NATS_NOT_PERMITTED:
      return "the server refuses (" + Detail(status) + "): give the user this right there";
    case NATS_SSL_ERROR:
      return "no TLS with the server (" + Detail(status) +
             "): check --tls-ca, --tls-cert, --tls-key and the host's name";
    case NATS_SECURE_CONNECTION_WANTED:
      return "the server has no TLS: set it up there, or use nats:// without --tls options";
    case NATS_PROTOCOL_ERROR:
      return "the server hangs up (" + Detail(status) + "): it may want a certificate; check --tls-cert and --tls-key";
    case NATS_NO_SERVER:
      return "no server answers: is it running there?";
    case NATS_NO_RESPONDERS:
      return "no JetStream answers there: start nats-server with -js, or allow it for the account";
    case NATS_CONNECTION_DISCONNECTED:
    case NATS_INSUFFICIENT_BUFFER:  // it may not keep what it can't send
      return "the server is away";
    default:
      return Detail(status);
  }
}

/// The client reports an unreadable file late and in other words.
std::string BytesOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!bytes.empty()) return bytes;
  const std::string why = file.is_open() ? "is empty" : std::string("can't be read: ") + std::strerror(errno);
  throw StreamError(StreamError::Kind::kRefused, path + ": " + why);
}

/// The client looks into the file only when the server asks, and takes one without credentials for a server that is
/// away.
void RequireCredentials(const std::string& path) {
  const std::string bytes = BytesOfFile(path);
  if (bytes.find("USER JWT---") != std::string::npos && bytes.find("USER NKEY SEED---") != std::string::npos) return;
  throw StreamError(StreamError::Kind::kRefused,
                    path + ": no NATS credentials: a file of them has a user's JWT and the seed of a user's key");
}

void CheckFile(natsStatus status, const std::string& path, const char* form) {
  if (status == NATS_OK) return;
  throw StreamError(StreamError::Kind::kRefused, path + ": no " + form + " (" + Detail(status) + ")");
}

void SetLogin(natsOptions* options, const ServerUrls& urls) {
  if (!urls.login) return;
  const NatsLogin& login = *urls.login;
  if (login.password) {
    natsOptions_SetUserInfo(options, login.name.c_str(), login.password->c_str());
  } else {
    natsOptions_SetToken(options, login.name.c_str());
  }
}

void SetFiles(natsOptions* options, const NatsServer& server) {
  for (const auto& path : {server.authority, server.certificate, server.key}) {
    if (!path.empty()) BytesOfFile(path);
  }
  if (!server.credentials.empty()) {
    RequireCredentials(server.credentials);
    CheckFile(natsOptions_SetUserCredentialsFromFiles(options, server.credentials.c_str(), nullptr), server.credentials,
              "NATS credentials");
  }
  if (!server.authority.empty()) {
    CheckFile(natsOptions_LoadCATrustedCertificates(options, server.authority.c_str()), server.authority,
              "certificates in PEM");
  }
  if (!server.certificate.empty()) {
    CheckFile(natsOptions_LoadCertificatesChain(options, server.certificate.c_str(), server.key.c_str()),
              server.certificate, "certificate in PEM with the key of --tls-key");
  }
}

bool WantsTls(const NatsServer& server, const ServerUrls& urls) {
  return urls.isTls || !server.authority.empty() || !server.certificate.empty();
}

Options OptionsFor(const NatsServer& server, const ServerUrls& urls) {
  natsOptions* made = nullptr;
  natsOptions_Create(&made);
  Options options(made);
  std::vector<const char*> pointers;
  for (const std::string& url : urls.urls) pointers.push_back(url.c_str());
  natsOptions_SetServers(made, pointers.data(), static_cast<int>(pointers.size()));
  natsOptions_SetName(made, "dtsdb relay");
  natsOptions_SetTimeout(made, kConnectWait);
  natsOptions_SetMaxReconnect(made, -1);
  natsOptions_SetReconnectWait(made, kReconnectWait);
  natsOptions_SetFailRequestsOnDisconnect(made, true);
  // What can't be sent at once fails: a message that came later would find another stream.
  natsOptions_SetReconnectBufSize(made, 0);
  natsOptions_SetSendAsap(made, true);
  natsOptions_SetErrorHandler(
      made, [](natsConnection*, natsSubscription*, natsStatus, void*) {}, nullptr);
  SetLogin(made, urls);
  // The client takes tls:// for nats://: without this it would send a login for all to read to a server without TLS.
  if (WantsTls(server, urls)) natsOptions_SetSecure(made, true);
  SetFiles(made, server);
  return options;
}

}  // namespace

std::string BytesOf(natsMsg* message) {
  return {natsMsg_GetData(message), static_cast<std::size_t>(natsMsg_GetDataLength(message))};
}

NatsConnection::NatsConnection(NatsServer server, std::string live)
    : m_server(std::move(server)), m_urls(ParseServerUrls(m_server.urls)), m_live(std::move(live)) {
  Connect();
}

void NatsConnection::Connect() {
  const Options options = OptionsFor(m_server, m_urls);
  natsConnection* connected = nullptr;
  natsStatus status = NATS_OK;
  // A server that hangs up has gone away just then, or doesn't want this program.
  for (int i = 0; i < kConnectTries; ++i) {
    if (i > 0) std::this_thread::sleep_for(std::chrono::milliseconds(kReconnectWait));
    status = natsConnection_Connect(&connected, options.get());
    if (status != NATS_PROTOCOL_ERROR && status != NATS_IO_ERROR && status != NATS_SSL_ERROR) break;
  }
  m_connection.reset(connected);
  if (status == NATS_IO_ERROR && WantsTls(m_server, m_urls)) status = NATS_PROTOCOL_ERROR;
  Check(status, m_urls.Shown());
  jsOptions settings;
  jsOptions_Init(&settings);
  settings.Wait = kNatsRequestWait;
  jsCtx* context = nullptr;
  Check(natsConnection_JetStream(&context, connected, &settings), m_urls.Shown());
  m_context.reset(context);
  natsSubscription* subscription = nullptr;
  Check(natsConnection_SubscribeSync(&subscription, connected, (m_live + ">").c_str()), m_urls.Shown());
  m_subscription.reset(subscription);
}

/// The client gives a connection up for good where a server refuses it twice, as while rights are being changed there.
void NatsConnection::Stand() {
  if (m_subscription && !natsConnection_IsClosed(m_connection.get())) return;
  m_subscription.reset();
  m_context.reset();
  m_connection.reset();
  try {
    Connect();
  } catch (const StreamError& error) {
    throw StreamError(StreamError::Kind::kUnreachable, error.what());
  }
}

jsCtx* NatsConnection::Js() {
  Stand();
  return m_context.get();
}

void NatsConnection::SendPulse(std::string_view bytes) {
  Stand();
  const std::string subject = m_live + "pulse";
  Check(natsConnection_Publish(m_connection.get(), subject.c_str(), bytes.data(), static_cast<int>(bytes.size())),
        subject);
}

std::int64_t NatsConnection::MaxPayload() {
  Stand();
  return natsConnection_GetMaxPayload(m_connection.get());
}

void NatsConnection::Check(natsStatus status, const std::string& what, jsErrCode code) const {
  if (status == NATS_OK) return;
  // What the user has no right to ask for isn't answered; the server reports it beside.
  const char* beside = nullptr;
  if (status == NATS_TIMEOUT && natsConnection_GetLastError(m_connection.get(), &beside) == NATS_NOT_PERMITTED) {
    throw StreamError(StreamError::Kind::kRefused,
                      m_urls.Shown() + ": " + beside + ": give the user this right in the server");
  }
  throw StreamError(KindOf(status, code), what + ": " + Reason(status));
}

void NatsConnection::Wait(std::int64_t longest) {
  if (m_messages.empty()) Listen(longest);
}

/// Takes what has come, and waits for it so many milliseconds where nothing has.
void NatsConnection::Listen(std::int64_t longest) {
  natsMsg* came = nullptr;
  while (natsSubscription_NextMsg(&came, m_subscription.get(), longest) == NATS_OK) {
    Take(NatsMessage(came));
    longest = 0;
    if (m_messages.size() >= kLivePending) return;
  }
}

void NatsConnection::Take(const NatsMessage& message) {
  if (m_live + "pulse" == natsMsg_GetSubject(message.get())) {
    m_pulse = BytesOf(message.get());
    return;
  }
  const char* sequence = nullptr;
  if (natsMsgHeader_Get(message.get(), "Nats-Sequence", &sequence) != NATS_OK) return;
  m_messages.emplace_back(std::strtoull(sequence, nullptr, 10), BytesOf(message.get()));
}

std::optional<std::string> NatsConnection::TakeLive(std::uint64_t number) {
  if (m_messages.empty()) Listen(0);
  while (!m_messages.empty() && m_messages.front().first < number) m_messages.pop_front();
  if (m_messages.empty() || m_messages.front().first != number) return {};
  std::string bytes = std::move(m_messages.front().second);
  m_messages.pop_front();
  return bytes;
}

}  // namespace dtsdb::relay

#include "relay/nats_stream.h"

#include <nats/nats.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <utility>
#include <vector>

namespace dtsdb::relay {
namespace {

constexpr int kRequestWait = 3000;   // milliseconds
constexpr int kReconnectWait = 200;  // likewise
constexpr int kConnectWait = 3000;   // likewise
constexpr int kLivePending = 64;     // messages that came and aren't asked for yet
constexpr std::size_t kMostPart = 512 * 1024;
constexpr std::size_t kHeaderRoom = 4096;  // of a message as the server counts it

template <auto Destroy>
struct Destroyer {
  template <class T>
  void operator()(T* object) const {
    Destroy(object);
  }
};
using Options = std::unique_ptr<natsOptions, Destroyer<natsOptions_Destroy>>;
using Subscription = std::unique_ptr<natsSubscription, Destroyer<natsSubscription_Destroy>>;
using Received = std::unique_ptr<natsMsg, Destroyer<natsMsg_Destroy>>;
using Context = std::unique_ptr<jsCtx, Destroyer<jsCtx_Destroy>>;
using StreamInfo = std::unique_ptr<jsStreamInfo, Destroyer<jsStreamInfo_Destroy>>;
using Acknowledgement = std::unique_ptr<jsPubAck, Destroyer<jsPubAck_Destroy>>;

StreamError::Kind KindOf(natsStatus status, int code) {
  if (code == JSStreamWrongLastSequenceErr) return StreamError::Kind::kMoved;
  switch (status) {
    case NATS_CONNECTION_AUTH_FAILED:
    case NATS_NOT_PERMITTED:
    case NATS_INVALID_ARG:
    case NATS_SSL_ERROR:
    case NATS_MAX_PAYLOAD:
      return StreamError::Kind::kRefused;
    default:
      return StreamError::Kind::kUnreachable;
  }
}

void Check(natsStatus status, const std::string& what, jsErrCode code = static_cast<jsErrCode>(0)) {
  if (status == NATS_OK) return;
  const char* const detail = nats_GetLastError(nullptr);
  const std::string why = detail != nullptr && *detail != '\0' ? detail : natsStatus_GetText(status);
  throw StreamError(KindOf(status, code), what + ": " + why);
}

std::string BytesOf(natsMsg* message) {
  return {natsMsg_GetData(message), static_cast<std::size_t>(natsMsg_GetDataLength(message))};
}

std::vector<std::string> Parted(const std::string& urls) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t end = 0; end != std::string::npos; begin = end + 1) {
    end = urls.find(',', begin);
    parts.push_back(urls.substr(begin, end == std::string::npos ? end : end - begin));
  }
  return parts;
}

Options OptionsFor(const NatsServer& server) {
  natsOptions* made = nullptr;
  Check(natsOptions_Create(&made), "NATS");
  Options options(made);
  const std::vector<std::string> urls = Parted(server.urls);
  std::vector<const char*> pointers;
  for (const std::string& url : urls) pointers.push_back(url.c_str());
  Check(natsOptions_SetServers(made, pointers.data(), static_cast<int>(pointers.size())), server.urls);
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
  if (!server.credentials.empty()) {
    Check(natsOptions_SetUserCredentialsFromFiles(made, server.credentials.c_str(), nullptr), server.credentials);
  }
  if (!server.authority.empty() || !server.certificate.empty()) Check(natsOptions_SetSecure(made, true), "TLS");
  if (!server.authority.empty()) {
    Check(natsOptions_LoadCATrustedCertificates(made, server.authority.c_str()), server.authority);
  }
  if (!server.certificate.empty()) {
    Check(natsOptions_LoadCertificatesChain(made, server.certificate.c_str(), server.key.c_str()), server.certificate);
  }
  return options;
}

}  // namespace

/// The connection itself, and what came over it live.
struct NatsStreams::Connection {
  Connection(const NatsServer& server, const std::string& name) : live("dtsdb." + name + ".live.") {
    const Options options = OptionsFor(server);
    Check(natsConnection_Connect(&connection, options.get()), server.urls);
    jsOptions settings;
    jsOptions_Init(&settings);
    settings.Wait = kRequestWait;
    jsCtx* made = nullptr;
    Check(natsConnection_JetStream(&made, connection, &settings), server.urls);
    context.reset(made);
    natsSubscription* subscribed = nullptr;
    Check(natsConnection_SubscribeSync(&subscribed, connection, (live + ">").c_str()), server.urls);
    subscription.reset(subscribed);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() {
    subscription.reset();
    context.reset();
    natsConnection_Destroy(connection);
  }

  /// Takes what has come, and waits for it so many milliseconds where nothing has.
  void Listen(std::int64_t longest) {
    natsMsg* came = nullptr;
    while (natsSubscription_NextMsg(&came, subscription.get(), longest) == NATS_OK) {
      Take(Received(came));
      longest = 0;
      if (messages.size() >= kLivePending) return;
    }
  }

  void Take(const Received& message) {
    if (live + "pulse" == natsMsg_GetSubject(message.get())) {
      pulse = BytesOf(message.get());
      return;
    }
    const char* sequence = nullptr;
    if (natsMsgHeader_Get(message.get(), "Nats-Sequence", &sequence) != NATS_OK) return;
    messages.emplace_back(std::strtoull(sequence, nullptr, 10), BytesOf(message.get()));
  }

  /// The message of that number, if it came live. Those in front of it are forgotten.
  std::optional<std::string> TakeLive(std::uint64_t number) {
    if (messages.empty()) Listen(0);
    while (!messages.empty() && messages.front().first < number) messages.pop_front();
    if (messages.empty() || messages.front().first != number) return {};
    std::string bytes = std::move(messages.front().second);
    messages.pop_front();
    return bytes;
  }

  std::string live;
  natsConnection* connection = nullptr;
  Context context;
  Subscription subscription;
  std::deque<std::pair<std::uint64_t, std::string>> messages;
  std::optional<std::string> pulse;
};

class NatsStreams::NatsStream final : public Stream {
 public:
  NatsStream(std::shared_ptr<Connection> connection, std::string name, std::string subject, bool isLive)
      : m_connection(std::move(connection)), m_name(std::move(name)), m_subject(std::move(subject)), m_isLive(isLive) {}

  void Make(std::size_t keep) {
    const char* const subject = m_subject.c_str();
    const char* subjects[] = {subject};
    jsStreamConfig config;
    jsStreamConfig_Init(&config);
    config.Name = m_name.c_str();
    config.Subjects = subjects;
    config.SubjectsLen = 1;
    config.Retention = js_LimitsPolicy;
    config.Discard = js_DiscardOld;
    config.Storage = js_FileStorage;
    config.AllowDirect = true;
    if (keep > 0) config.MaxBytes = static_cast<std::int64_t>(keep);
    jsRePublish live;
    jsRePublish_Init(&live);
    const std::string destination = m_connection->live + "commit";
    live.Source = subject;
    live.Destination = destination.c_str();
    if (m_isLive) config.RePublish = &live;
    auto code = static_cast<jsErrCode>(0);
    natsStatus status = js_AddStream(nullptr, Js(), &config, nullptr, &code);
    if (code == JSStreamNameExistErr) status = js_UpdateStream(nullptr, Js(), &config, nullptr, &code);
    Check(status, "stream " + m_name, code);
  }

  StreamRange Range() override {
    jsStreamInfo* got = nullptr;
    auto code = static_cast<jsErrCode>(0);
    const natsStatus status = js_GetStreamInfo(&got, Js(), m_name.c_str(), nullptr, &code);
    const StreamInfo info(got);
    if (code == JSStreamNotFoundErr) {
      throw StreamError(StreamError::Kind::kUnreachable, "the server has no stream " + m_name);
    }
    Check(status, "stream " + m_name, code);
    return {std::max<std::uint64_t>(1, info->State.FirstSeq), info->State.LastSeq};
  }

  void Append(std::string_view bytes, std::uint64_t last) override {
    natsMsg* made = nullptr;
    Check(natsMsg_Create(&made, m_subject.c_str(), nullptr, bytes.data(), static_cast<int>(bytes.size())), m_name);
    const Received message(made);
    Check(natsMsgHeader_Set(made, "Nats-Expected-Last-Sequence", std::to_string(last).c_str()), m_name);
    Check(natsMsgHeader_Set(made, "Nats-Expected-Stream", m_name.c_str()), m_name);
    jsPubAck* got = nullptr;
    auto code = static_cast<jsErrCode>(0);
    const natsStatus status = js_PublishMsg(&got, Js(), made, nullptr, &code);
    const Acknowledgement acknowledgement(got);
    Check(status, "stream " + m_name, code);
    // The server takes 0 for "any".
    if (got->Sequence == last + 1) return;
    throw StreamError(StreamError::Kind::kMoved, "stream " + m_name + ": others write into it");
  }

  std::optional<std::string> Read(std::uint64_t number) override {
    if (number == 0) return {};
    if (m_isLive) {
      if (auto bytes = m_connection->TakeLive(number)) return bytes;
    }
    jsDirectGetMsgOptions options;
    jsDirectGetMsgOptions_Init(&options);
    options.Sequence = number;
    natsMsg* got = nullptr;
    natsStatus status = js_DirectGetMsg(&got, Js(), m_name.c_str(), nullptr, &options);
    if (status == NATS_NOT_FOUND) {
      // Another server of a cluster may not have it yet; the one that leads the stream has.
      auto code = static_cast<jsErrCode>(0);
      status = js_GetMsg(&got, Js(), m_name.c_str(), number, nullptr, &code);
    }
    const Received message(got);
    if (status == NATS_NOT_FOUND) return {};
    Check(status, "stream " + m_name);
    return BytesOf(got);
  }

  void DiscardBelow(std::uint64_t number) override {
    if (number <= 1) return;
    jsOptions options;
    jsOptions_Init(&options);
    options.Wait = kRequestWait;
    options.Stream.Purge.Sequence = number;
    auto code = static_cast<jsErrCode>(0);
    const natsStatus status = js_PurgeStream(Js(), m_name.c_str(), &options, &code);
    Check(status, "stream " + m_name, code);
  }

  std::size_t MostBytes() override {
    const auto most = static_cast<std::size_t>(
        std::max<std::int64_t>(2 * kHeaderRoom, natsConnection_GetMaxPayload(m_connection->connection)));
    return std::min(kMostPart, most - kHeaderRoom);
  }

  void SendPulse(std::string_view bytes) override {
    const std::string subject = m_connection->live + "pulse";
    Check(
        natsConnection_Publish(m_connection->connection, subject.c_str(), bytes.data(), static_cast<int>(bytes.size())),
        subject);
  }

  void Wait(std::chrono::milliseconds longest) override {
    if (!m_connection->messages.empty()) return;
    m_connection->Listen(std::max<std::int64_t>(1, longest.count()));
  }

  std::optional<std::string> TakePulse() override { return std::exchange(m_connection->pulse, std::nullopt); }

 private:
  jsCtx* Js() const { return m_connection->context.get(); }

  std::shared_ptr<Connection> m_connection;
  std::string m_name;
  std::string m_subject;
  bool m_isLive;
};

NatsStreams::NatsStreams(const NatsServer& server, const std::string& name)
    : m_connection(std::make_shared<Connection>(server, name)),
      m_commits(std::make_unique<NatsStream>(m_connection, "DTSDB_" + name, "dtsdb." + name + ".commits", true)),
      m_snapshots(std::make_unique<NatsStream>(m_connection, "DTSDB_" + name + "_SNAPSHOTS",
                                               "dtsdb." + name + ".snapshots", false)) {}

NatsStreams::~NatsStreams() = default;

void NatsStreams::Make(std::size_t keep) {
  m_commits->Make(keep);
  m_snapshots->Make(0);
}

Stream& NatsStreams::Commits() { return *m_commits; }
Stream& NatsStreams::Snapshots() { return *m_snapshots; }

std::string WhyNoStreamName(const std::string& name) {
  constexpr std::size_t kLongest = 64;
  const auto isGood = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
  };
  if (!name.empty() && name.size() <= kLongest && std::all_of(name.begin(), name.end(), isGood)) return "";
  return "a name has letters, digits, - and _, at most " + std::to_string(kLongest);
}

}  // namespace dtsdb::relay

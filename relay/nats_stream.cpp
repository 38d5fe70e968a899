#include "relay/nats_stream.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "relay/nats_connection.h"

namespace dtsdb::relay {
namespace {

constexpr std::size_t kMostPart = std::size_t{512} << 10;
constexpr std::size_t kHeaderRoom = 4096;  // of a message as the server counts it

using StreamInfo = std::unique_ptr<jsStreamInfo, NatsDestroyer<jsStreamInfo_Destroy>>;
using Acknowledgement = std::unique_ptr<jsPubAck, NatsDestroyer<jsPubAck_Destroy>>;

}  // namespace

class NatsStreams::NatsStream final : public Stream {
 public:
  NatsStream(std::shared_ptr<NatsConnection> connection, std::string name, std::string subject, bool isLive)
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
    const std::string destination = m_connection->Live() + "commit";
    live.Source = subject;
    live.Destination = destination.c_str();
    if (m_isLive) config.RePublish = &live;
    auto code = static_cast<jsErrCode>(0);
    natsStatus status = js_AddStream(nullptr, Js(), &config, nullptr, &code);
    if (code == JSStreamNameExistErr) status = js_UpdateStream(nullptr, Js(), &config, nullptr, &code);
    m_connection->Check(status, "stream " + m_name, code);
  }

  StreamRange Range() override {
    jsStreamInfo* got = nullptr;
    auto code = static_cast<jsErrCode>(0);
    const natsStatus status = js_GetStreamInfo(&got, Js(), m_name.c_str(), nullptr, &code);
    const StreamInfo info(got);
    if (code == JSStreamNotFoundErr) {
      throw StreamError(StreamError::Kind::kUnreachable, "the server has no stream " + m_name);
    }
    m_connection->Check(status, "stream " + m_name, code);
    return {std::max<std::uint64_t>(1, info->State.FirstSeq), info->State.LastSeq};
  }

  void Append(std::string_view bytes, std::uint64_t last) override {
    natsMsg* made = nullptr;
    m_connection->Check(natsMsg_Create(&made, m_subject.c_str(), nullptr, bytes.data(), static_cast<int>(bytes.size())),
                        m_name);
    const NatsMessage message(made);
    m_connection->Check(natsMsgHeader_Set(made, "Nats-Expected-Last-Sequence", std::to_string(last).c_str()), m_name);
    m_connection->Check(natsMsgHeader_Set(made, "Nats-Expected-Stream", m_name.c_str()), m_name);
    jsPubAck* got = nullptr;
    auto code = static_cast<jsErrCode>(0);
    const natsStatus status = js_PublishMsg(&got, Js(), made, nullptr, &code);
    const Acknowledgement acknowledgement(got);
    m_connection->Check(status, "stream " + m_name, code);
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
    const NatsMessage message(got);
    if (status == NATS_NOT_FOUND) return {};
    m_connection->Check(status, "stream " + m_name);
    return BytesOf(got);
  }

  void DiscardBelow(std::uint64_t number) override {
    if (number <= 1) return;
    jsOptions options;
    jsOptions_Init(&options);
    options.Wait = kNatsRequestWait;
    options.Stream.Purge.Sequence = number;
    auto code = static_cast<jsErrCode>(0);
    const natsStatus status = js_PurgeStream(Js(), m_name.c_str(), &options, &code);
    m_connection->Check(status, "stream " + m_name, code);
  }

  std::size_t MostBytes() override {
    const auto most = static_cast<std::size_t>(std::max<std::int64_t>(2 * kHeaderRoom, m_connection->MaxPayload()));
    return std::min(kMostPart, most - kHeaderRoom);
  }

  void SendPulse(std::string_view bytes) override { m_connection->SendPulse(bytes); }

  void Wait(std::chrono::milliseconds longest) override {
    m_connection->Wait(std::max<std::int64_t>(1, longest.count()));
  }

  std::optional<std::string> TakePulse() override { return m_connection->TakePulse(); }

 private:
  jsCtx* Js() const { return m_connection->Js(); }

  std::shared_ptr<NatsConnection> m_connection;
  std::string m_name;
  std::string m_subject;
  bool m_isLive;
};

NatsStreams::NatsStreams(const NatsServer& server, const std::string& name)
    : m_connection(std::make_shared<NatsConnection>(server, "dtsdb." + name + ".live.")),
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

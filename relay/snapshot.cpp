#include "relay/snapshot.h"

#include <utility>

namespace dtsdb::relay {
namespace {

std::optional<FoundManifest> ManifestIn(const std::optional<std::string>& bytes, std::uint64_t sequence) {
  const std::optional<Message> message = bytes ? DecodeMessage(*bytes) : std::nullopt;
  if (!message || message->kind != MessageKind::kManifest || message->parts >= sequence) return {};
  return FoundManifest{{message->epoch, message->number, message->link}, sequence, message->parts};
}

}  // namespace

SnapshotWriter::SnapshotWriter(Stream& stream, SnapshotPlace place, std::string payload)
    : m_stream(stream), m_place(place), m_payload(std::move(payload)) {}

void SnapshotWriter::Begin() {
  const std::optional<FoundManifest> before = FindManifest(m_stream);
  m_manifest = before ? before->sequence : 0;
  m_last = m_stream.Range().last;
  Message head;
  head.kind = MessageKind::kSnapshot;
  head.epoch = m_place.epoch;
  head.number = m_place.number;
  head.link = m_manifest;
  m_parts = EncodeParts(head, m_payload, m_stream.MostBytes());
}

bool SnapshotWriter::Write(std::size_t parts) {
  if (m_parts.empty()) Begin();
  for (; parts > 0 && m_next < m_parts.size(); --parts) {
    m_stream.Append(m_parts[m_next++], m_last);
    ++m_last;
  }
  if (m_next < m_parts.size()) return false;
  Finish();
  return true;
}

void SnapshotWriter::Finish() {
  Message manifest;
  manifest.kind = MessageKind::kManifest;
  manifest.epoch = m_place.epoch;
  manifest.number = m_place.number;
  manifest.parts = static_cast<std::uint32_t>(m_parts.size());
  manifest.link = m_place.sequence;
  m_stream.Append(EncodeMessage(manifest), m_last);
  // The one before stays for those who are reading it.
  const auto before = ManifestIn(m_manifest != 0 ? m_stream.Read(m_manifest) : std::nullopt, m_manifest);
  m_stream.DiscardBelow(before ? before->sequence - before->parts : m_last + 1 - m_parts.size());
}

std::optional<FoundManifest> FindManifest(Stream& stream) {
  const StreamRange range = stream.Range();
  if (range.last < range.first) return {};
  const std::optional<std::string> bytes = stream.Read(range.last);
  const std::optional<Message> message = bytes ? DecodeMessage(*bytes) : std::nullopt;
  if (!message) return {};
  if (message->kind == MessageKind::kManifest) return ManifestIn(bytes, range.last);
  if (message->kind != MessageKind::kSnapshot || message->link == 0) return {};
  return ManifestIn(stream.Read(message->link), message->link);
}

std::optional<std::string> ReadSnapshot(Stream& stream, const FoundManifest& manifest) {
  std::string payload;
  const std::uint64_t first = manifest.sequence - manifest.parts;
  for (std::uint32_t part = 0; part < manifest.parts; ++part) {
    const std::optional<std::string> bytes = stream.Read(first + part);
    const std::optional<Message> message = bytes ? DecodeMessage(*bytes) : std::nullopt;
    if (!message || message->kind != MessageKind::kSnapshot || message->epoch != manifest.place.epoch ||
        message->number != manifest.place.number || message->part != part || message->parts != manifest.parts ||
        payload.size() + message->body.size() > kMostCommit) {
      return {};
    }
    payload.append(message->body);
  }
  return payload;
}

}  // namespace dtsdb::relay

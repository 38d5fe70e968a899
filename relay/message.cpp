#include "relay/message.h"

#include <zlib.h>

#include <algorithm>

#include "relay/bytes.h"

namespace dtsdb::relay {
namespace {

constexpr std::string_view kMark = "DTRL";
constexpr std::uint8_t kVersion = 1;
constexpr std::size_t kChecksumPlace = 12;

/// Of all bytes but the checksum's own.
std::uint32_t ChecksumOf(std::string_view bytes) {
  const auto add = [](uLong sum, std::string_view piece) {
    return ::crc32_z(sum, reinterpret_cast<const Bytef*>(piece.data()), piece.size());
  };
  const uLong head = add(::crc32_z(0, nullptr, 0), bytes.substr(0, kChecksumPlace));
  return static_cast<std::uint32_t>(add(head, bytes.substr(kChecksumPlace + 4)));
}

bool IsKind(std::uint8_t kind) {
  return kind >= static_cast<std::uint8_t>(MessageKind::kCommit) &&
         kind <= static_cast<std::uint8_t>(MessageKind::kPulse);
}

}  // namespace

std::string EncodeMessage(const Message& message) {
  std::string bytes;
  bytes.reserve(kHeadSize + message.body.size());
  ByteWriter writer(bytes);
  writer.Put(kMark);
  writer.Put(kVersion);
  writer.Put(static_cast<std::uint8_t>(message.kind));
  writer.Put(std::uint16_t{0});
  writer.Put(static_cast<std::uint32_t>(kHeadSize + message.body.size()));
  writer.Put(std::uint32_t{0});
  writer.Put(message.epoch);
  writer.Put(message.number);
  writer.Put(message.part);
  writer.Put(message.parts);
  writer.Put(message.link);
  writer.Put(message.body);
  std::string checksum;
  ByteWriter(checksum).Put(ChecksumOf(bytes));
  bytes.replace(kChecksumPlace, checksum.size(), checksum);
  return bytes;
}

std::optional<Message> DecodeMessage(std::string_view bytes) {
  if (bytes.size() < kHeadSize || bytes.size() > kMostMessage) return {};
  ByteReader reader(bytes);
  const bool isOurs = reader.Get(kMark.size()) == kMark && reader.Get<std::uint8_t>() == kVersion;
  const auto kind = reader.Get<std::uint8_t>();
  const auto reserved = reader.Get<std::uint16_t>();
  const auto length = reader.Get<std::uint32_t>();
  const auto checksum = reader.Get<std::uint32_t>();
  if (!isOurs || !IsKind(kind) || reserved != 0 || length != bytes.size() || checksum != ChecksumOf(bytes)) return {};
  Message message;
  message.kind = static_cast<MessageKind>(kind);
  message.epoch = reader.Get<std::uint64_t>();
  message.number = reader.Get<std::uint64_t>();
  message.part = reader.Get<std::uint32_t>();
  message.parts = reader.Get<std::uint32_t>();
  message.link = reader.Get<std::uint64_t>();
  message.body = bytes.substr(kHeadSize);
  if (message.epoch == 0 || message.parts == 0 || message.part >= message.parts) return {};
  if (message.kind == MessageKind::kCommit && message.link > kMostCommit) return {};
  return message;
}

std::vector<std::string> EncodeParts(Message head, std::string_view payload, std::size_t room) {
  const std::size_t size = std::max(room, kHeadSize + 1) - kHeadSize;
  const std::size_t parts = std::max<std::size_t>(1, (payload.size() + size - 1) / size);
  head.parts = static_cast<std::uint32_t>(parts);
  if (head.kind == MessageKind::kCommit) head.link = payload.size();
  std::vector<std::string> messages;
  for (std::size_t part = 0; part < parts; ++part) {
    head.part = static_cast<std::uint32_t>(part);
    head.body = payload.substr(part * size, size);
    messages.push_back(EncodeMessage(head));
  }
  return messages;
}

std::string EncodeTime(std::int64_t time) {
  std::string body;
  ByteWriter(body).Put(static_cast<std::uint64_t>(time));
  return body;
}

std::optional<std::int64_t> DecodeTime(std::string_view body) {
  ByteReader reader(body);
  const auto time = static_cast<std::int64_t>(reader.Get<std::uint64_t>());
  if (!reader.IsDone()) return {};
  return time;
}

}  // namespace dtsdb::relay

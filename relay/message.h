/// \file
/// The messages of a relay: a head with length and checksum, then a piece of a commit or a few numbers.
///
/// docs/relay.md describes the bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dtsdb::relay {

/// The bytes of a message's head.
inline constexpr std::size_t kHeadSize = 48;
/// No message is longer, and no commit has more bytes in all its parts.
inline constexpr std::size_t kMostMessage = std::size_t{64} << 20;
inline constexpr std::size_t kMostCommit = std::size_t{4} << 30;

enum class MessageKind : std::uint8_t {
  kCommit = 1,    ///< a part of a commit
  kSnapshot = 2,  ///< a part of a whole state, which is a commit on an empty database
  kManifest = 3,  ///< the end of a snapshot, the parts of which stand right in front of it
  kPulse = 4,     ///< the publisher is there, and a commit is still its newest
};

/// A message. `body` isn't owned.
struct Message {
  MessageKind kind = MessageKind::kCommit;
  std::uint64_t epoch = 0;   ///< of the publisher: drawn anew whenever a commit doesn't follow on the one before
  std::uint64_t number = 0;  ///< of the commit in its epoch, from 0
  std::uint32_t part = 0;    ///< from 0; in a manifest 0
  std::uint32_t parts = 1;   ///< of the commit; in a manifest those of its snapshot
  /// In a commit the bytes of all its parts. In a part of a snapshot the place of the manifest before in the same
  /// stream, 0 for none; in a manifest the place in the stream of the commits from which on these follow.
  std::uint64_t link = 0;
  std::string_view body;

  bool IsLastPart() const { return part + 1 == parts; }
};

std::string EncodeMessage(const Message& message);

/// The message in `bytes`, or nothing where they are none: another version, a wrong length or checksum, numbers out of
/// their range.
std::optional<Message> DecodeMessage(std::string_view bytes);

/// The messages of `payload`, with at most `room` bytes each.
std::vector<std::string> EncodeParts(Message head, std::string_view payload, std::size_t room);

/// The body of a pulse: when the publisher found nothing new, in microseconds since 1970.
std::string EncodeTime(std::int64_t time);
std::optional<std::int64_t> DecodeTime(std::string_view body);

}  // namespace dtsdb::relay

/// \file
/// Whole states in a stream of their own, for followers that can't go on from commits alone.
///
/// A snapshot is its parts one behind the other and a manifest right behind the last. Until the manifest is there the
/// one before counts, which each part names.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "relay/message.h"
#include "relay/stream.h"

namespace dtsdb::relay {

/// Which commit a snapshot is the state behind of.
struct SnapshotPlace {
  std::uint64_t epoch = 0;
  std::uint64_t number = 0;    ///< of the commit in its epoch
  std::uint64_t sequence = 0;  ///< of its last message in the stream of the commits
};

/// Writes one snapshot piece by piece.
class SnapshotWriter {
 public:
  /// `payload` is the whole state as a commit.
  SnapshotWriter(Stream& stream, SnapshotPlace place, std::string payload);

  /// Writes some parts, or all that is left. True when the snapshot is whole; then those before the last one are let go
  /// of. A StreamError leaves it unfinished for good: begin another.
  bool Write(std::size_t parts);
  bool WriteAll() { return Write(SIZE_MAX); }
  std::size_t Size() const { return m_payload.size(); }

 private:
  void Begin();
  void Finish();

  Stream& m_stream;
  SnapshotPlace m_place;
  std::string m_payload;
  std::vector<std::string> m_parts;
  std::size_t m_next = 0;
  std::uint64_t m_last = 0;      // the newest message of the stream
  std::uint64_t m_manifest = 0;  // that stood there before
};

struct FoundManifest {
  SnapshotPlace place;
  std::uint64_t sequence = 0;  ///< of the manifest
  std::uint32_t parts = 0;
};

/// The manifest of the newest whole snapshot, or nothing.
std::optional<FoundManifest> FindManifest(Stream& stream);

/// The payload of a snapshot; nothing where a part is missing or isn't sound.
std::optional<std::string> ReadSnapshot(Stream& stream, const FoundManifest& manifest);

}  // namespace dtsdb::relay

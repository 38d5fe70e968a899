/// \file
/// Keeps a copy of a published database.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "relay/copy.h"
#include "relay/message.h"
#include "relay/snapshot.h"
#include "relay/stream.h"

namespace dtsdb::relay {

/// What a step of the follower has done.
struct Followed {
  enum class Kind {
    kCurrent,      ///< nothing new
    kCommit,       ///< applied a commit
    kSnapshot,     ///< took over a snapshot
    kLost,         ///< the copy can't go on from where it is, `why`: the next step looks for a snapshot
    kNoSnapshot,   ///< it needs one, and there is none that it could use; the step has waited
    kOtherLayout,  ///< the publisher's tables have other columns than this program's; the step has waited
  };
  Kind kind = Kind::kCurrent;
  std::size_t rows = 0;
  std::string why{};
};

/// Follows a publisher's streams, one step after the other. A commit is applied if it is the one behind the copy's own
/// and whole, and leaves the state that the publisher had; anything else leads to a snapshot.
class Follower {
 public:
  /// `source` is noted in the copy, for people. All must outlive the follower.
  Follower(Copy& copy, Stream& commits, Stream& snapshots, std::string source);
  Follower(const Follower&) = delete;
  Follower& operator=(const Follower&) = delete;

  /// Does what is next, or waits for it, but no longer than that. Throws StreamError, and what writing the copy throws;
  /// a next step goes on then.
  Followed Step(std::chrono::milliseconds longest);

  /// The copy's note; nothing before its first snapshot.
  const std::optional<CopyNote>& Note() const { return m_note; }

 private:
  /// A commit of which all parts have come.
  struct Received {
    Message head;
    std::uint64_t sequence = 0;  // of its last part
    std::string payload;
  };

  /// Why the copy's place isn't one of the stream; empty where it is.
  std::string WhyNotInStream();
  /// Reads the parts that are there of the commit behind the copy's own. `why` is set where they are no such commit.
  std::optional<Received> ReadNext(std::string& why);
  bool TakePart(const std::string& bytes, std::string& why);
  Followed Apply(const Received& received, std::chrono::milliseconds longest);
  Followed WaitForMore(std::chrono::milliseconds longest);
  void TakePulse();
  Followed TakeSnapshot(std::chrono::milliseconds longest);
  bool IsUsable(const SnapshotPlace& place);
  Followed Lose(std::string why);
  Followed Pause(Followed::Kind kind, std::chrono::milliseconds longest);

  Copy& m_copy;
  Stream& m_commits;
  Stream& m_snapshots;
  std::string m_source;
  std::optional<CopyNote> m_note;
  bool m_isLost = true;      // a snapshot is needed
  bool m_isChecked = false;  // the copy's place has been found in the stream
  Received m_partial;
  std::uint32_t m_parts = 0;  // that have come of it
};

}  // namespace dtsdb::relay

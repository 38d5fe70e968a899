/// \file
/// Sends the changed rows of a database's commits into a stream.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "relay/database_image.h"
#include "relay/snapshot.h"
#include "relay/stream.h"

namespace dtsdb::relay {

/// What a look of the publisher has done.
struct Sent {
  enum class Kind {
    kNothing,   ///< nothing has changed
    kEpoch,     ///< began an epoch with a snapshot
    kGoesOn,    ///< found in the stream what it sent last, and goes on behind it
    kCommit,    ///< sent a commit
    kSnapshot,  ///< finished a snapshot besides
  };
  Kind kind = Kind::kNothing;
  std::uint64_t number = 0;  ///< of the newest commit
  std::size_t rows = 0;      ///< of the commit, or of the whole state
  std::size_t bytes = 0;
};

/// Publishes one database.
///
/// Each look reads the newest commit in one read transaction, compares the tables that have changed with what was sent
/// last, and sends what differs as one commit. Several commits between two looks become one. Whatever fails on the way
/// is finished by a later look: what was read is sent before anything else is read, and a message whose storing is in
/// doubt is looked for in the stream first.
///
/// When it starts it goes on behind the last commit in the stream if that left the state which the database has now.
/// Else, and when the stream has lost messages, it begins a new epoch with a snapshot of the whole state.
class Publisher {
 public:
  struct Options {
    /// A new snapshot is written when so many bytes of commits have been sent behind the last one, or as many as it has
    /// if that is more, and a commit of more bytes becomes a new epoch. The stream must keep several times as many.
    std::size_t snapshotEvery = std::size_t{64} << 20;
    /// Draws the name of an epoch; never 0.
    std::function<std::uint64_t()> drawEpoch;
  };

  /// Reads the database into the image. Throws when it can't be read.
  using ReadCommit = std::function<std::optional<Commit>(DatabaseImage&)>;

  /// The streams must outlive the publisher.
  Publisher(DatabaseImage image, ReadCommit read, Stream& commits, Stream& snapshots, Options options);
  Publisher(const Publisher&) = delete;
  Publisher& operator=(const Publisher&) = delete;

  /// Reads what is new and sends it. Throws StreamError, with kMoved when another publisher writes into the stream, and
  /// what reading the database throws; look again later.
  Sent Look();

  /// Lets the followers know that nothing has changed since the last look. Only after a look that sent nothing.
  void Pulse();

 private:
  Sent Start();
  /// Whether the last commit of the stream left the state that was read.
  bool FindsOwnEnd(const StreamRange& range);
  Sent BeginEpoch(std::uint64_t last);
  Sent SendCommit(const Commit& commit);
  void SendPending();
  void Store(const std::string& message);
  bool IsStored(std::string_view message);
  void WriteSnapshot(Sent& sent);
  SnapshotPlace Place() const { return {m_epoch, m_number, m_last}; }

  DatabaseImage m_image;
  ReadCommit m_read;
  Stream& m_commits;
  Stream& m_snapshots;
  Options m_options;

  bool m_started = false;
  std::uint64_t m_epoch = 0;
  std::uint64_t m_number = 0;  // of the newest commit
  std::uint64_t m_last = 0;    // the newest message that the stream is known to have
  std::deque<std::string> m_pending;
  bool m_isInDoubt = false;  // whether the first of them was stored
  std::size_t m_sinceSnapshot = 0;
  std::size_t m_snapshotSize = 0;
  std::unique_ptr<SnapshotWriter> m_snapshot;
};

}  // namespace dtsdb::relay

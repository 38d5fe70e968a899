/// \file
/// The streams of a published database, kept by a NATS server with JetStream.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "relay/nats_server.h"
#include "relay/stream.h"

namespace dtsdb::relay {

class NatsConnection;

/// The connection of a publisher or follower with its two streams. When the server goes away it is looked for until it
/// is back; meanwhile the streams' calls throw StreamError.
///
/// The commits of database NAME are in stream DTSDB_NAME under the subject dtsdb.NAME.commits, its snapshots in
/// DTSDB_NAME_SNAPSHOTS under dtsdb.NAME.snapshots. What is stored in the first goes out under dtsdb.NAME.live.commit
/// at once, and pulses under dtsdb.NAME.live.pulse.
class NatsStreams {
 public:
  /// Connects. `name` is that of the database. Throws StreamError, and std::invalid_argument for URLs that are none.
  NatsStreams(const NatsServer& server, const std::string& name);
  NatsStreams(const NatsStreams&) = delete;
  NatsStreams& operator=(const NatsStreams&) = delete;
  ~NatsStreams();

  /// Makes the streams where they don't exist. That of the commits keeps its newest `keep` bytes. Throws StreamError.
  void Make(std::size_t keep);

  Stream& Commits();
  Stream& Snapshots();

 private:
  class NatsStream;

  std::shared_ptr<NatsConnection> m_connection;
  std::unique_ptr<NatsStream> m_commits;
  std::unique_ptr<NatsStream> m_snapshots;
};

/// What is wrong with a name for the streams, or an empty text.
std::string WhyNoStreamName(const std::string& name);

}  // namespace dtsdb::relay

/// \file
/// What a run records of its own work.
#pragma once

#include <vector>

#include "topology/internal/network.h"

namespace dtsdb::internal {

/// One event of a run.
struct RunEvent {
  int kind;          ///< kind code of the table of the record
  int ref;           ///< the record's number
  u32 status;        ///< its status word
  int oldBs;         ///< its section before
  int newBs;         ///< its section after, -1 for none
  const char* word;  ///< of the event
};

/// The logs of an incremental run: CHND has the nodes that moved, TPL the events.
///
/// Writes CHND and TPL; reads the identities of the logged records. As cheap to copy as a pointer.
class ChangeLog {
 public:
  /// `moveOfNode` has room for a number for each node, and keeps the rows of CHND; null where nodes don't move twice.
  ChangeLog(const Network& network, bool on, std::vector<int>* moveOfNode)
      : m_network(network), m_on(on), m_moveOfNode(moveOfNode) {}

  /// False in a full run, whose stages record nothing. The calls below record all the same: the stages ask first.
  bool IsOn() const { return m_on; }

  /// Records that node `nd` of level `kv` has moved. False when there is no room.
  bool RecordMove(int nd, int newBs, int oldBs, int kv) const;
  /// The same where a node may move several times in a run: it stands there once, with its first old section and its
  /// last new one.
  bool RecordLastMove(int nd, int newBs, int oldBs, int kv) const;
  /// Records an event, with the time and the identity of its record. False without a word for a kind that isn't
  /// logged, and with a line through qDebug when there is no room.
  bool Record(const RunEvent& event) const;

 private:
  int FirstMove(int nd) const;

  Network m_network;
  bool m_on;
  std::vector<int>* m_moveOfNode;
};

}  // namespace dtsdb::internal

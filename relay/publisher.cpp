#include "relay/publisher.h"

#include <algorithm>
#include <utility>

namespace dtsdb::relay {
namespace {

/// So many parts of a snapshot are written with each look, so that commits don't wait for all of it.
constexpr std::size_t kPartsAtOnce = 4;

/// What another publisher does shows in the stream of the commits. Here it is a reason to try again.
bool WriteParts(SnapshotWriter& snapshot, std::size_t parts) {
  try {
    return snapshot.Write(parts);
  } catch (const StreamError& error) {
    if (error.What() != StreamError::Kind::kMoved) throw;
    throw StreamError(StreamError::Kind::kUnreachable, error.what());
  }
}

}  // namespace

Publisher::Publisher(DatabaseImage image, ReadCommit read, Stream& commits, Stream& snapshots, Options options)
    : m_image(std::move(image)),
      m_read(std::move(read)),
      m_commits(commits),
      m_snapshots(snapshots),
      m_options(std::move(options)) {}

Sent Publisher::Look() {
  if (!m_started) return Start();
  SendPending();
  Sent sent;
  if (const std::optional<Commit> commit = m_read(m_image)) sent = SendCommit(*commit);
  if (sent.kind != Sent::Kind::kEpoch) WriteSnapshot(sent);
  sent.number = m_number;
  return sent;
}

Sent Publisher::Start() {
  m_read(m_image);
  m_pending.clear();
  m_snapshot.reset();
  m_isInDoubt = false;
  const StreamRange range = m_commits.Range();
  if (!FindsOwnEnd(range)) return BeginEpoch(range.last);
  m_last = range.last;
  m_started = true;
  return {Sent::Kind::kGoesOn, m_number, 0, 0};
}

bool Publisher::FindsOwnEnd(const StreamRange& range) {
  if (range.last < range.first) return false;
  const std::optional<std::string> bytes = m_commits.Read(range.last);
  const std::optional<Message> message = bytes ? DecodeMessage(*bytes) : std::nullopt;
  if (!message || message->kind != MessageKind::kCommit || !message->IsLastPart()) return false;
  // The hash stands in the first part.
  const std::uint64_t first = range.last - message->part;
  const std::optional<std::string> firstBytes = message->part == 0 ? bytes : m_commits.Read(first);
  const std::optional<Message> head = firstBytes ? DecodeMessage(*firstBytes) : std::nullopt;
  if (!head || head->epoch != message->epoch || head->number != message->number || head->part != 0) return false;
  if (DecodeStateHash(head->body) != m_image.Hash()) return false;
  const std::optional<FoundManifest> manifest = FindManifest(m_snapshots);
  if (!manifest || manifest->place.epoch != message->epoch) return false;
  m_epoch = message->epoch;
  m_number = message->number;
  // How much was sent since that snapshot isn't known any more: the next commit has another one written.
  m_sinceSnapshot = m_options.snapshotEvery;
  m_snapshotSize = 0;
  return true;
}

Sent Publisher::BeginEpoch(std::uint64_t last) {
  m_started = false;
  m_last = last;
  m_epoch = m_options.drawEpoch();
  m_number = 0;
  m_pending.clear();
  const Commit whole = m_image.Whole();
  // The snapshot first: it names the place that the epoch's first message will have.
  SnapshotWriter snapshot(m_snapshots, {m_epoch, 0, last + 1}, EncodeCommit(whole));
  WriteParts(snapshot, SIZE_MAX);
  Commit begin;
  begin.time = whole.time;
  begin.after = whole.after;
  Message head;
  head.epoch = m_epoch;
  for (std::string& part : EncodeParts(head, EncodeCommit(begin), m_commits.MostBytes())) {
    m_pending.push_back(std::move(part));
  }
  SendPending();
  m_started = true;
  m_snapshot.reset();
  m_snapshotSize = snapshot.Size();
  m_sinceSnapshot = 0;
  return {Sent::Kind::kEpoch, 0, whole.RowCount(), snapshot.Size()};
}

Sent Publisher::SendCommit(const Commit& commit) {
  const std::string payload = EncodeCommit(commit);
  // So large a commit could push its own first parts out of the stream.
  if (payload.size() > std::max(m_options.snapshotEvery, m_snapshotSize)) return BeginEpoch(m_last);
  Message head;
  head.epoch = m_epoch;
  head.number = ++m_number;
  for (std::string& part : EncodeParts(head, payload, m_commits.MostBytes())) m_pending.push_back(std::move(part));
  m_sinceSnapshot += payload.size();
  SendPending();
  return {Sent::Kind::kCommit, m_number, commit.RowCount(), payload.size()};
}

void Publisher::SendPending() {
  try {
    while (!m_pending.empty()) {
      if (!m_isInDoubt || !IsStored(m_pending.front())) Store(m_pending.front());
      m_isInDoubt = false;
      ++m_last;
      m_pending.pop_front();
    }
  } catch (const StreamError& error) {
    if (error.What() != StreamError::Kind::kMoved || m_commits.Range().last >= m_last) throw;
    // The state goes into the stream anew.
    m_started = false;
    throw StreamError(StreamError::Kind::kUnreachable, "the stream has lost messages");
  }
}

void Publisher::Store(const std::string& message) {
  m_isInDoubt = true;
  try {
    m_commits.Append(message, m_last);
  } catch (const StreamError& error) {
    // What was sent before without an answer may have come late.
    if (error.What() != StreamError::Kind::kMoved || !IsStored(message)) throw;
  }
}

/// A message that was sent without an answer: it stands in the stream as its newest one, or not at all.
bool Publisher::IsStored(std::string_view message) {
  const StreamRange range = m_commits.Range();
  if (range.last == m_last) return false;
  if (range.last == m_last + 1 && m_commits.Read(range.last) == message) return true;
  throw StreamError(StreamError::Kind::kMoved, "the stream has other messages than were sent into it");
}

void Publisher::WriteSnapshot(Sent& sent) {
  if (!m_snapshot && m_sinceSnapshot < std::max(m_options.snapshotEvery, m_snapshotSize)) return;
  if (!m_snapshot && sent.kind != Sent::Kind::kCommit) return;
  if (!m_snapshot) {
    m_snapshot = std::make_unique<SnapshotWriter>(m_snapshots, Place(), EncodeCommit(m_image.Whole()));
    m_sinceSnapshot = 0;
  }
  try {
    if (!WriteParts(*m_snapshot, kPartsAtOnce)) return;
  } catch (const StreamError&) {
    m_snapshot.reset();
    m_sinceSnapshot = std::max(m_options.snapshotEvery, m_snapshotSize);
    throw;
  }
  m_snapshotSize = m_snapshot->Size();
  m_snapshot.reset();
  if (sent.kind == Sent::Kind::kNothing) sent.kind = Sent::Kind::kSnapshot;
}

void Publisher::Pulse() {
  if (!m_started || !m_pending.empty()) return;
  Message pulse;
  pulse.kind = MessageKind::kPulse;
  pulse.epoch = m_epoch;
  pulse.number = m_number;
  const std::string body = EncodeTime(m_image.Time());
  pulse.body = body;
  m_commits.SendPulse(EncodeMessage(pulse));
}

}  // namespace dtsdb::relay

#include "relay/follower.h"

#include <utility>

namespace dtsdb::relay {
namespace {

/// A pulse is noted at most so often, in microseconds.
constexpr std::int64_t kBetweenNotes = 1'000'000;

bool IsCommitOf(const std::optional<std::string>& bytes, const SnapshotPlace& place) {
  const std::optional<Message> message = bytes ? DecodeMessage(*bytes) : std::nullopt;
  return message && message->kind == MessageKind::kCommit && message->epoch == place.epoch &&
         message->number == place.number && message->IsLastPart();
}

}  // namespace

Follower::Follower(Copy& copy, Stream& commits, Stream& snapshots, std::string source)
    : m_copy(copy), m_commits(commits), m_snapshots(snapshots), m_source(std::move(source)), m_note(copy.Note()) {
  m_isLost = !m_note;
}

Followed Follower::Step(std::chrono::milliseconds longest) {
  if (m_isLost) return TakeSnapshot(longest);
  if (!m_isChecked) {
    if (std::string why = WhyNotInStream(); !why.empty()) return Lose(std::move(why));
    m_isChecked = true;
  }
  std::string why;
  std::optional<Received> received = ReadNext(why);
  if (!why.empty()) return Lose(std::move(why));
  return received ? Apply(*received, longest) : WaitForMore(longest);
}

std::string Follower::WhyNotInStream() {
  const StreamRange range = m_commits.Range();
  if (range.last < m_note->sequence) return "the stream has been begun anew";
  if (range.first > m_note->sequence + 1) return "the stream no longer has the next commit";
  if (range.first > m_note->sequence) return "";
  const bool isThere = IsCommitOf(m_commits.Read(m_note->sequence), {m_note->epoch, m_note->number, 0});
  return isThere ? "" : "the stream has another commit in its place";
}

bool Follower::TakePart(const std::string& bytes, std::string& why) {
  const std::optional<Message> message = DecodeMessage(bytes);
  if (!message || message->kind != MessageKind::kCommit) {
    why = "the stream has something else than a commit";
  } else if (message->epoch != m_note->epoch) {
    why = "the publisher has begun anew";
  } else if (message->number != m_note->number + 1 || message->part != m_parts) {
    why = "a commit is missing";
  } else if (m_parts > 0 && (message->parts != m_partial.head.parts || message->link != m_partial.head.link)) {
    why = "the parts of a commit don't belong together";
  } else if (m_partial.payload.size() + message->body.size() > message->link) {
    why = "a commit is longer than it should be";
  }
  if (!why.empty()) return false;
  m_partial.head = *message;
  m_partial.head.body = {};
  m_partial.payload.append(message->body);
  ++m_parts;
  return true;
}

std::optional<Follower::Received> Follower::ReadNext(std::string& why) {
  for (;;) {
    const std::uint64_t sequence = m_note->sequence + m_parts + 1;
    const std::optional<std::string> bytes = m_commits.Read(sequence);
    if (!bytes || !TakePart(*bytes, why)) return {};
    if (!m_partial.head.IsLastPart()) continue;
    m_partial.sequence = sequence;
    m_parts = 0;
    Received received = std::exchange(m_partial, {});
    if (received.payload.size() != received.head.link) why = "a commit is shorter than it should be";
    return received;
  }
}

Followed Follower::Apply(const Received& received, std::chrono::milliseconds longest) {
  const std::optional<Commit> commit = DecodeCommit(received.payload);
  if (!commit) return Lose("a commit can't be read");
  CopyNote after = *m_note;
  after.number = received.head.number;
  after.sequence = received.sequence;
  after.hash = commit->after;
  after.changed = after.asOf = commit->time;
  after.source = m_source;
  switch (m_copy.Apply(*commit, *m_note, after)) {
    case Copy::Outcome::kApplied:
      break;
    case Copy::Outcome::kDiffers:
      return Lose("the copy isn't what the publisher's database was");
    case Copy::Outcome::kOtherLayout:
      return Pause(Followed::Kind::kOtherLayout, longest);
  }
  m_note = after;
  return {Followed::Kind::kCommit, commit->RowCount()};
}

Followed Follower::WaitForMore(std::chrono::milliseconds longest) {
  const auto begin = std::chrono::steady_clock::now();
  m_commits.Wait(longest);
  TakePulse();
  // Nothing has come at all: perhaps the stream isn't the one that it was.
  if (std::chrono::steady_clock::now() - begin >= longest) m_isChecked = false;
  return {};
}

void Follower::TakePulse() {
  const std::optional<std::string> bytes = m_commits.TakePulse();
  const std::optional<Message> pulse = bytes ? DecodeMessage(*bytes) : std::nullopt;
  if (!pulse || pulse->kind != MessageKind::kPulse || pulse->epoch != m_note->epoch ||
      pulse->number != m_note->number) {
    return;
  }
  const std::optional<std::int64_t> time = DecodeTime(pulse->body);
  if (!time || *time - m_note->asOf < kBetweenNotes) return;
  CopyNote after = *m_note;
  after.asOf = *time;
  if (m_copy.Confirm(*m_note, after) == Copy::Outcome::kApplied) {
    m_note = after;
  } else {
    m_isLost = true;
  }
}

bool Follower::IsUsable(const SnapshotPlace& place) {
  const StreamRange range = m_commits.Range();
  if (range.first > place.sequence + 1 || range.last < place.sequence) return false;
  return range.first > place.sequence || IsCommitOf(m_commits.Read(place.sequence), place);
}

Followed Follower::TakeSnapshot(std::chrono::milliseconds longest) {
  const std::optional<FoundManifest> manifest = FindManifest(m_snapshots);
  if (!manifest || !IsUsable(manifest->place)) return Pause(Followed::Kind::kNoSnapshot, longest);
  const std::optional<std::string> payload = ReadSnapshot(m_snapshots, *manifest);
  const std::optional<Commit> whole = payload ? DecodeCommit(*payload) : std::nullopt;
  if (!whole) return Pause(Followed::Kind::kNoSnapshot, longest);
  CopyNote after;
  after.epoch = manifest->place.epoch;
  after.number = manifest->place.number;
  after.sequence = manifest->place.sequence;
  after.hash = whole->after;
  after.changed = after.asOf = whole->time;
  after.source = m_source;
  switch (m_copy.Replace(*whole, after)) {
    case Copy::Outcome::kApplied:
      break;
    case Copy::Outcome::kDiffers:
      return Pause(Followed::Kind::kNoSnapshot, longest);
    case Copy::Outcome::kOtherLayout:
      return Pause(Followed::Kind::kOtherLayout, longest);
  }
  m_note = after;
  m_isLost = false;
  m_isChecked = true;
  m_partial = {};
  m_parts = 0;
  return {Followed::Kind::kSnapshot, whole->RowCount()};
}

Followed Follower::Lose(std::string why) {
  m_isLost = true;
  return {Followed::Kind::kLost, 0, std::move(why)};
}

Followed Follower::Pause(Followed::Kind kind, std::chrono::milliseconds longest) {
  m_commits.Wait(longest);
  return {kind};
}

}  // namespace dtsdb::relay

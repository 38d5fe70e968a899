/// \file
/// A stream of numbered messages that a server keeps, as publisher and follower see it.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace dtsdb::relay {

/// Why something could not be done with a stream.
class StreamError : public std::runtime_error {
 public:
  enum class Kind {
    kUnreachable,  ///< the server didn't answer: a message may have been stored nonetheless; try again later
    kMoved,        ///< the stream has another last message than the caller knows: nothing was stored
    kRefused,      ///< the server won't: rights, limits, a wrong name
  };

  StreamError(Kind kind, const std::string& what) : std::runtime_error(what), m_kind(kind) {}
  Kind What() const { return m_kind; }

 private:
  Kind m_kind;
};

/// The messages that a stream has: those numbered from first to last. Empty where last is first - 1; numbers are never
/// given twice.
struct StreamRange {
  std::uint64_t first = 1;
  std::uint64_t last = 0;
};

/// A stream. Every call may throw StreamError.
class Stream {
 public:
  virtual ~Stream() = default;

  virtual StreamRange Range() = 0;
  /// Stores a message as number `last` + 1, if `last` is the number of the newest one; else kMoved.
  virtual void Append(std::string_view bytes, std::uint64_t last) = 0;
  /// The message of that number, or nothing where the stream doesn't have it.
  virtual std::optional<std::string> Read(std::uint64_t number) = 0;
  /// Lets go of all messages below `number`.
  virtual void DiscardBelow(std::uint64_t number) = 0;
  /// The most bytes of a message.
  virtual std::size_t MostBytes() = 0;

  /// Hands on bytes to those who wait now, without keeping them.
  virtual void SendPulse(std::string_view bytes) = 0;
  /// Waits until something comes, a message or a pulse, but no longer than that.
  virtual void Wait(std::chrono::milliseconds longest) = 0;
  /// The newest pulse that came since the last call, if one did.
  virtual std::optional<std::string> TakePulse() = 0;
};

}  // namespace dtsdb::relay

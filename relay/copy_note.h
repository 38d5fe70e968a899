/// \file
/// What a copy knows of itself, kept in the store beside its rows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "relay/state_hash.h"

namespace dtsdb::relay {

/// Which commit a copy is the state behind of.
struct CopyNote {
  std::uint64_t epoch = 0;
  std::uint64_t number = 0;    ///< of the commit in its epoch
  std::uint64_t sequence = 0;  ///< of its last message in the stream
  StateHash hash;              ///< of all rows
  std::int64_t changed = 0;    ///< when the publisher read the commit, in microseconds since 1970
  std::int64_t asOf = 0;       ///< when the publisher last found nothing newer
  std::string source;          ///< where it comes from, for people; one line

  bool IsAt(const CopyNote& other) const {
    return epoch == other.epoch && number == other.number && sequence == other.sequence && hash == other.hash;
  }
};

std::string EncodeNote(const CopyNote& note);
/// Nothing for a text that is no note.
std::optional<CopyNote> DecodeNote(std::string_view text);

}  // namespace dtsdb::relay

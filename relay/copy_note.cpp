#include "relay/copy_note.h"

#include <fmt/format.h>

#include <cinttypes>
#include <cstdio>

namespace dtsdb::relay {

std::string EncodeNote(const CopyNote& note) {
  return fmt::format("relay 1 {:x} {} {} {:x} {:x} {} {} {}", note.epoch, note.number, note.sequence, note.hash.low,
                     note.hash.high, note.changed, note.asOf, note.source);
}

std::optional<CopyNote> DecodeNote(std::string_view text) {
  const std::string line(text);
  CopyNote note;
  int end = 0;
  const int read = std::sscanf(
      line.c_str(), "relay 1 %" SCNx64 " %" SCNu64 " %" SCNu64 " %" SCNx64 " %" SCNx64 " %" SCNd64 " %" SCNd64 " %n",
      &note.epoch, &note.number, &note.sequence, &note.hash.low, &note.hash.high, &note.changed, &note.asOf, &end);
  if (read != 7 || end == 0) return {};
  note.source = line.substr(static_cast<std::size_t>(end));
  return note;
}

}  // namespace dtsdb::relay

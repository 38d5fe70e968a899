// Any bytes as a message of a relay, as the commit in it, and as rows: refused, or read so that it encodes to the same
// bytes. The first byte chooses what they are taken for.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/byte_source.h"
#include "fuzz/require.h"
#include "relay/commit.h"
#include "relay/message.h"
#include "relay/row_layout.h"
#include "rtdb/volma_rtdb.h"

namespace {

using namespace dtsdb;

template <class Row>
void ReadRow(std::string_view bytes) {
  static const relay::RowLayout layout(Row::dbDescriptor);
  const relay::RecordRoom room(layout.RecordSize());
  if (layout.Decode(bytes, room.Get())) {
    std::string again;
    layout.Encode(room.Get(), again);
    fuzz::Require(again == bytes, "the same row");
  }
  const relay::RecordRoom key(layout.RecordSize());
  if (!layout.DecodeKey(bytes, key.Get())) return;
  std::string again;
  layout.EncodeKey(key.Get(), again);
  fuzz::Require(again == bytes, "the same key");
}

void ReadCommit(std::string_view bytes) {
  relay::DecodeStateHash(bytes);
  const auto commit = relay::DecodeCommit(bytes);
  if (!commit) return;
  fuzz::Require(relay::EncodeCommit(*commit) == bytes, "the same commit");
  for (const relay::TableChange& table : commit->tables) {
    for (const relay::ChangedRow& row : table.updated) ReadRow<un>(row.bytes);
    for (const relay::ChangedRow& row : table.removed) ReadRow<r_kv_nd>(row.bytes);
  }
}

void ReadMessage(std::string_view bytes) {
  const auto message = relay::DecodeMessage(bytes);
  if (!message) return;
  fuzz::Require(relay::EncodeMessage(*message) == bytes, "the same message");
  relay::DecodeTime(message->body);
  ReadCommit(message->body);
}

/// Few bytes have the right checksum, so that these become the body of a message, which must come out again.
void SendMessage(std::string_view body) {
  relay::Message head;
  head.epoch = 1;
  head.number = body.size();
  std::string whole;
  for (const std::string& part : relay::EncodeParts(head, body, relay::kHeadSize + 7)) {
    const auto message = relay::DecodeMessage(part);
    fuzz::Require(message.has_value(), "what is encoded can be decoded");
    whole += message->body;
  }
  fuzz::Require(whole == body, "the same payload");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::ByteSource bytes(data, size);
  const int choice = bytes.Below(5);
  if (choice == 0) ReadMessage(bytes.Rest());
  if (choice == 1) ReadCommit(bytes.Rest());
  if (choice == 2) ReadRow<un>(bytes.Rest());
  if (choice == 3) ReadRow<r_kv_nd>(bytes.Rest());
  if (choice == 4) SendMessage(bytes.Rest());
  return 0;
}

#include "page/internal/gzip.h"

#include <zlib.h>

#include <algorithm>
#include <new>

namespace dtsdb::page::internal {
namespace {

constexpr int kGzipWindow = 15 + 16;  // the largest window, in the frame of gzip
constexpr int kMemoryLevel = 8;       // zlib's default
constexpr std::size_t kPiece = std::size_t{1} << 20;

}  // namespace

std::string Gzip(const std::string& bytes) {
  z_stream stream{};
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kMemoryLevel, Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::bad_alloc();
  }
  std::string packed;
  std::string piece(kPiece, '\0');
  std::size_t at = 0;
  int state = Z_OK;
  while (state != Z_STREAM_END) {
    if (stream.avail_in == 0 && at < bytes.size()) {
      const std::size_t size = std::min(kPiece, bytes.size() - at);
      stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data() + at));
      stream.avail_in = static_cast<uInt>(size);
      at += size;
    }
    stream.next_out = reinterpret_cast<Bytef*>(piece.data());
    stream.avail_out = static_cast<uInt>(piece.size());
    state = deflate(&stream, at == bytes.size() ? Z_FINISH : Z_NO_FLUSH);
    packed.append(piece, 0, piece.size() - stream.avail_out);
  }
  deflateEnd(&stream);
  return packed;
}

}  // namespace dtsdb::page::internal

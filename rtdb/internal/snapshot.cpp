#include "rtdb/internal/snapshot.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "include/write_whole.h"

namespace dtsdb::internal::rtdb {
namespace {

/// Room for two heads, each of which is a page, of the largest size that LMDB knows.
constexpr std::size_t kHeadRoom = std::size_t{2} << 16;
constexpr std::size_t kPiece = std::size_t{1} << 20;

std::vector<char> HeadBytes(int file) {
  std::vector<char> heads(kHeadRoom);
  heads.resize(static_cast<std::size_t>(std::max<ssize_t>(0, ReadWhole(file, heads.data(), heads.size(), 0))));
  return heads;
}

/// Copies what stands in the file `from` from `offset` on.
int CopyFrom(int from, off_t offset, int to) {
  std::vector<char> piece(kPiece);
  for (;;) {
    const ssize_t got = ReadWhole(from, piece.data(), piece.size(), offset);
    if (got < 0) return errno;
    if (got == 0) return 0;
    if (const int error = WriteWhole(to, piece.data(), static_cast<std::size_t>(got), offset); error != 0) return error;
    offset += got;
  }
}

}  // namespace

int CopyBytes(int from, int to) { return CopyFrom(from, 0, to); }

int Snapshot::Take(int file) {
  m_copy = Descriptor(::memfd_create("store", MFD_CLOEXEC));
  if (!m_copy.IsOpen()) return errno;
  // The heads first: whatever they name is in the file by then.
  m_heads = HeadBytes(file);
  if (const int error = WriteWhole(m_copy.Get(), m_heads.data(), m_heads.size(), 0); error != 0) return error;
  return CopyFrom(file, static_cast<off_t>(m_heads.size()), m_copy.Get());
}

bool Snapshot::IsWhole(MDB_env* env, int file) const {
  MDB_stat stat{};
  MDB_envinfo info{};
  if (mdb_env_stat(env, &stat) != MDB_SUCCESS || mdb_env_info(env, &info) != MDB_SUCCESS) return false;
  // States take turns in the two heads.
  const std::size_t head = info.me_last_txnid % 2 * stat.ms_psize;
  const std::vector<char> now = HeadBytes(file);
  return head + stat.ms_psize <= std::min(now.size(), m_heads.size()) &&
         std::memcmp(now.data() + head, m_heads.data() + head, stat.ms_psize) == 0;
}

bool Snapshot::IsNewest(int file) const { return HeadBytes(file) == m_heads; }

}  // namespace dtsdb::internal::rtdb

/// \file
/// Whether a store file can be used without harm.
///
/// LMDB trusts its file: a page that points out of the file, or whose entries overlap, brings the process down, and a
/// damaged head makes it go back to the state before. So a file is looked through before it is used. The check reads
/// the heads, each page's header, and the header and key of each entry, not the rows. docs/realtime-store.md lists what
/// it looks for.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct MDB_env;

namespace dtsdb::internal::rtdb {

/// Looks at the head of an existing file, before LMDB opens it. Returns what is wrong, or an empty text. An empty file
/// is a store to be made.
std::string CheckFileHead(const std::string& path);

/// Whether an open file is a store that was being made when its program, or the power, failed: fewer than its two
/// heads, and nothing else. There is nothing in it to lose.
bool IsUnfinished(int fd);

/// Notes in the file that the disk has refused the head of `transaction`, whose commit has failed: the check then takes
/// what LMDB has left there.
void NoteRefusedHead(MDB_env* env, std::uint64_t transaction);

/// Looks through all pages of the opened store as they are now; other programs may go on writing meanwhile. Returns
/// what is wrong, or an empty text.
std::string CheckPages(MDB_env* env);

/// Looks at the heads and all pages of a store that nobody writes. Returns what is wrong, or an empty text.
std::string CheckBytes(std::string_view file);
/// The same for an open file.
std::string CheckWholeFile(int file);

}  // namespace dtsdb::internal::rtdb

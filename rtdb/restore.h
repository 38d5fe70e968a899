/// \file
/// Putting a copy of a store in the store's place.
#pragma once

#include <functional>
#include <string>

namespace dtsdb::rtdb {

/// Puts a copy of the file `backup` in the place of the store `store`, which nobody may have open, or where there is
/// none. At every moment the old store or the new one stands there, whole, and nothing else is left, whatever ends the
/// program. The old one is removed, or gets the free name `keptAs` in the same file system. The new store has the owner
/// and permissions of the old one, and the numbers of changes (dbDatabase::changeNumber) are unknown in it.
///
/// Before that the copy's pages are checked, and `check` is called with a path that leads to it. Returns an empty text,
/// or what is wrong, with the file's name in front; the old store is then as it was.
std::string RestoreStore(const std::string& backup, const std::string& store, const std::string& keptAs,
                         const std::function<std::string(const std::string& copy)>& check);

}  // namespace dtsdb::rtdb

#include "page/followed_database.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

#include "formats/failure.h"
#include "model/twins.h"
#include "rtdb/file_name.h"

namespace dtsdb::page {
namespace {

/// A lost database is looked for so often, in seconds.
constexpr double kBetweenOpenings = 1;
/// A file that was written while no table has changed is opened anew at most so often.
constexpr double kBetweenStamps = 2;
/// So many times as long as it took to read a database that counts no changes it isn't read again.
constexpr double kPause = 20;

double SteadySeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::vector<TableKind> AllKinds() {
  std::vector<TableKind> kinds;
  for (int kind = 1; kind <= kTableCount; ++kind) kinds.push_back(static_cast<TableKind>(kind));
  return kinds;
}

template <class Numbers>
Numbers ChangeNumbersOf(dbDatabase* db) {
  Numbers numbers{};
  ForEachRecordClass([&]<class T> {
    numbers[static_cast<std::size_t>(T::kKind) - 1] =
        rtdb::ChangeNumber(db, db->lookupTable(&Twin<T>::Row::dbDescriptor));
  });
  return numbers;
}

}  // namespace

FollowedDatabase::FollowedDatabase(std::string name) : m_name(std::move(name)), m_file(rtdb::FileOf(m_name)) {}

DatabaseLook FollowedDatabase::Look() {
  try {
    if (!m_database) {
      if (SteadySeconds() < m_openDue) return {};
      m_database = std::make_unique<tools::RealtimeDatabase>(m_name, dbDatabase::dbReadOnly);
      m_numbers.reset();
      m_stamp = Stamp();
    }
    return LookAt(*m_database);
  } catch (const tools::Failure& failure) {
    return Lose(failure.what());
  }
}

DatabaseLook FollowedDatabase::LookAt(tools::RealtimeDatabase& database) {
  const double now = SteadySeconds();
  const auto numbers = ChangeNumbersOf<Numbers>(database.Db());
  database.Check();
  const bool counts = std::any_of(numbers.begin(), numbers.end(), [](std::uint64_t number) { return number != 0; });
  std::vector<TableKind> changed = m_numbers && counts ? ChangedSince(numbers) : AllKinds();
  const bool isDue = counts || !m_numbers || now >= m_readDue;
  if (changed.empty() || !isDue) {
    database.Db()->commit();
    if (counts && WasWrittenUnseen(now)) m_database.reset();
    return {};
  }
  DatabaseLook look = Read(database, std::move(changed));
  m_numbers = numbers;
  m_stamp = Stamp();
  m_readDue = SteadySeconds() + kPause * (SteadySeconds() - now);
  return look;
}

DatabaseLook FollowedDatabase::Read(tools::RealtimeDatabase& database, std::vector<TableKind> changed) {
  DatabaseLook look;
  look.tables.ReadFastdb(database.Db());
  database.Check();
  SettleTables(look.tables);
  look.kind = DatabaseLook::Kind::kRead;
  look.changed = std::move(changed);
  return look;
}

DatabaseLook FollowedDatabase::Lose(const std::string& why) {
  m_database.reset();
  m_openDue = SteadySeconds() + kBetweenOpenings;
  const bool isNewer = why.find("newer layout") != std::string::npos;
  DatabaseLook look;
  look.kind = isNewer ? DatabaseLook::Kind::kNewerLayout : DatabaseLook::Kind::kLost;
  look.why = why;
  return look;
}

std::vector<TableKind> FollowedDatabase::ChangedSince(const Numbers& numbers) const {
  std::vector<TableKind> changed;
  for (const TableKind kind : AllKinds()) {
    const auto at = static_cast<std::size_t>(kind) - 1;
    if (numbers[at] != (*m_numbers)[at]) changed.push_back(kind);
  }
  return changed;
}

/// Where the program may not write the lock file, it reads a copy that was taken at the opening: nothing changes in it.
bool FollowedDatabase::WasWrittenUnseen(double now) {
  if (now < m_stampDue) return false;
  m_stampDue = now + kBetweenStamps;
  return Stamp() != std::exchange(m_stamp, Stamp());
}

FollowedDatabase::FileStamp FollowedDatabase::Stamp() const {
  std::error_code ignored;
  return {std::filesystem::last_write_time(m_file, ignored), std::filesystem::file_size(m_file, ignored)};
}

}  // namespace dtsdb::page

#include "formats/realtime.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <system_error>

#include "formats/failure.h"
#include "formats/files.h"
#include "formats/messages.h"
#include "rtdb/file_name.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {

HeldSignals::HeldSignals() {
  sigset_t held;
  ::sigemptyset(&held);
  if constexpr (rtdb::kMustBeClosed) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGPIPE}) ::sigaddset(&held, signal);
  }
  ::pthread_sigmask(SIG_BLOCK, &held, &m_before);
}

HeldSignals::~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

RealtimeDatabase::RealtimeDatabase(const std::string& name, dbDatabase::dbAccessType access)
    : m_file(name), m_database(*this, access) {
  if (m_file.empty()) throw Failure(kExitUsage, "the realtime database needs a NAME, as in rtdb:grid");
  m_file = rtdb::FileOf(m_file);
  // FastDB makes even a database that is only to be read, and files of its own beside any.
  const bool mayBeMade = access != dbDatabase::dbReadOnly;
  std::error_code ignored;
  if (!mayBeMade && !fs::exists(m_file, ignored)) RefuseFile(m_file, std::strerror(ENOENT));
  if (mayBeMade && !fs::exists(fs::absolute(m_file, ignored).parent_path(), ignored)) {
    RefuseFile(m_file, "no such folder");
  }
  if (m_database.open(rtdb::IdentityOf(m_file).c_str(), m_file.c_str())) return;
  Check();
  RefuseFile(m_file, "can't be opened");
}

RealtimeDatabase::~RealtimeDatabase() {
  if (!m_database.isOpen()) return;
  try {
    m_database.rollback();
    m_database.close();
  } catch (const std::bad_alloc&) {  // nothing is committed; the command ends by the first one
    return;
  } catch (const std::exception& error) {
    WriteMessage(error.what());
  }
}

void RealtimeDatabase::Check() const {
  const std::string& error = m_database.firstError;
  if (error.empty()) return;
  // Most errors name the file; the others need it.
  throw Failure(kExitFile, error.find(m_file) == std::string::npos ? m_file + ": " + error : error);
}

RealtimeDatabase::Database::Database(const RealtimeDatabase& owner, dbAccessType access)
    : dbDatabase(access), m_owner(owner) {
  setErrorHandler([](int, char const*, int, void*) {});  // nothing goes to the standard error stream
}

void RealtimeDatabase::Database::handleError(dbErrorClass error, char const* message, int argument) {
  const bool hasMessage = message != nullptr && *message != '\0';
  if (firstError.empty()) {
    firstError = hasMessage ? message : fmt::format("the realtime database reports error {}", static_cast<int>(error));
  }
  if (error == DatabaseOpenError) return;  // open() returns false; FastDB would write a line
  try {
    dbDatabase::handleError(error, message, argument);
  } catch (const std::exception& thrown) {
    if (!hasMessage) firstError = thrown.what();
    m_owner.Check();
  }
}

}  // namespace dtsdb::tools

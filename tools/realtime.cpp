#include "tools/realtime.h"

#include <fmt/format.h>

#include "tools/failure.h"
#include "tools/files.h"

namespace dtsdb::tools {
namespace {

constexpr std::string_view kPrefix = "rtdb:";

}  // namespace

std::optional<std::string> RealtimeName(const std::string& model) {
  if (!model.starts_with(kPrefix)) return std::nullopt;
  return model.substr(kPrefix.size());
}

RealtimeDatabase::RealtimeDatabase(const std::string& name, dbDatabase::dbAccessType access)
    : m_name(RealtimeName(name).value_or(name)), m_database(access) {
  if (m_name.empty()) throw Failure(EXIT_USAGE, "the realtime database needs a NAME, as in rtdb:grid");
  m_database.setErrorHandler(Take, this);
  if (m_database.open(m_name.c_str())) return;
  Check();
  RefuseFile(m_name, "can't be opened");
}

void RealtimeDatabase::Check() const {
  if (m_error.empty()) return;
  // Most errors name the file; the others need it.
  throw Failure(EXIT_FILE, m_error.find(m_name) == std::string::npos ? m_name + ": " + m_error : m_error);
}

void RealtimeDatabase::Take(int error, char const* message, int, void* self) {
  std::string& first = static_cast<RealtimeDatabase*>(self)->m_error;
  if (!first.empty()) return;
  const bool told = message != nullptr && *message != '\0';
  first = told ? message : fmt::format("the realtime database tells of error {}", error);
}

}  // namespace dtsdb::tools

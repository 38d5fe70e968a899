#include "relay/relayed_database.h"

#include <utility>

#include "formats/failure.h"
#include "rtdb/file_name.h"

namespace dtsdb::relay {

PublishedDatabase::PublishedDatabase(std::string name)
    : m_name(std::move(name)), m_database(std::make_unique<tools::RealtimeDatabase>(m_name, dbDatabase::dbReadOnly)) {}

std::optional<Commit> PublishedDatabase::Read(DatabaseImage& image) {
  if (!m_database) {
    m_database = std::make_unique<tools::RealtimeDatabase>(m_name, dbDatabase::dbReadOnly);
    m_isNew = true;
  }
  if (m_isNew) image.Forget();
  try {
    std::optional<Commit> commit = image.Read(*m_database->Db(), [this] { m_database->Check(); });
    m_isNew = false;
    return commit;
  } catch (const tools::Failure&) {
    m_database.reset();
    throw;
  }
}

KeptCopy::KeptCopy(const std::string& name)
    : m_database(name, dbDatabase::dbCopyAccess),
      m_copy(
          *m_database.Db(), [this] { m_database.Check(); }, CarriedTables()) {
  if (m_copy.Note() || !m_copy.HasRows()) return;
  throw tools::Failure(tools::kExitFile, rtdb::FileOf(name) +
                                             ": a database of its own with rows, which no copy "
                                             "replaces; name another file");
}

std::optional<CopyNote> NoteOf(const std::string& name) {
  tools::RealtimeDatabase database(name, dbDatabase::dbReadOnly);
  const std::string text = database.Db()->copyNote();
  database.Check();
  return DecodeNote(text);
}

bool ReleaseCopy(const std::string& name) {
  { const tools::RealtimeDatabase existing(name, dbDatabase::dbReadOnly); }  // a missing one isn't made
  tools::RealtimeDatabase database(name, dbDatabase::dbCopyAccess);
  const bool wasCopy = !database.Db()->copyNote().empty();
  if (wasCopy) database.Db()->setCopyNote("");
  database.Db()->commit();
  database.Check();
  return wasCopy;
}

}  // namespace dtsdb::relay

#include "tests/faults/power/versions.h"

#include <fmt/format.h>

#include <stdexcept>

#include "formats/text_tables.h"
#include "model/dtsdb.h"
#include "model/objectfile.h"
#include "model/text.h"
#include "rtdb/backend.h"

namespace dtsdb::test {

/// A row of the database.
struct numbered {
  char const* id = "";
  int4 version = 0;
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(version)));
};
REGISTER_UNASSIGNED(numbered);

namespace {

namespace fs = std::filesystem;

/// Each version has another number of records, so that pages come and go.
int CountOf(int version) { return 40 + version * 37 % 200; }

std::string IdOf(int i) { return fmt::format("a point with a number of its own, {}", i); }

DTSDB ModelOf(int version) {
  DTSDB model;
  for (int i = 0; i < CountOf(version); ++i) {
    ANALOG point(IdFromLiteral(IdOf(i).c_str()));
    point.idx = version;
    model.m_analogTable->Add(point);
  }
  return model;
}

/// What the versions of `count` records, handed over one after the other, make of the whole.
class Judge {
 public:
  void Take(int version) {
    if (m_count++ == 0) m_found.version = version;
    if (version != m_found.version) Refuse(fmt::format("versions {} and {} are mixed", m_found.version, version));
  }
  FoundVersion Verdict() {
    if (m_count != 0 && m_count != CountOf(m_found.version)) {
      Refuse(fmt::format("version {} has {} records", m_found.version, m_count));
    }
    return m_found;
  }
  void Refuse(const std::string& wrong) {
    if (m_found.wrong.empty()) m_found.wrong = wrong;
  }

 private:
  int m_count = 0;
  FoundVersion m_found;
};

FoundVersion VersionOf(DTSDB& model) {
  Judge judge;
  for (int i = 0; i < model.m_analogTable->GetCount(); ++i) judge.Take((*model.m_analogTable)[i].idx);
  return judge.Verdict();
}

std::string FileName(const fs::path& path) { return path.string() + ".fdb"; }

void KeepError(int, char const* message, int, void* kept) {
  std::string& text = *static_cast<std::string*>(kept);
  if (text.empty()) text = message == nullptr ? "an error without a message" : message;
}

FoundVersion ReadRows(const fs::path& path) {
  if (!fs::exists(FileName(path))) return {};
  Judge judge;
  std::string error;
  dbDatabase database;
  database.setErrorHandler(KeepError, &error);
  if (database.open("versions", FileName(path).c_str())) {
    dbCursor<numbered> cursor(&database, dbCursorViewOnly);
    cursor.select();
    for (const numbered* row = cursor.get(); row != nullptr; row = cursor.next()) judge.Take(row->version);
    database.close();
  } else if (error.empty()) {
    error = "it can't be opened";
  }
  if (!error.empty()) judge.Refuse(error);
  return judge.Verdict();
}

}  // namespace

const char* NameOf(Kept kept) {
  constexpr const char* kNames[] = {"object.obj", "tables", "store"};
  return kNames[static_cast<std::size_t>(kept)];
}

VersionWriter::VersionWriter(Kept kept, const fs::path& folder) : m_kept(kept), m_path(folder / NameOf(kept)) {
  if (kept != Kept::kStore) return;
  m_database = std::make_unique<dbDatabase>();
  if (!m_database->open("versions", FileName(m_path).c_str())) throw std::runtime_error("the store can't be opened");
}

VersionWriter::~VersionWriter() = default;

void VersionWriter::Write(int version) {
  if (m_kept == Kept::kStore) return WriteRows(version);
  DTSDB model = ModelOf(version);
  if (m_kept == Kept::kTextTables) return tools::WriteTextTables(model, m_path.string());
  const QString failure = WriteObjectFile(model, QString::fromStdString(m_path.string()));
  if (!failure.isNull()) throw std::runtime_error(failure.toStdString());
}

void VersionWriter::WriteRows(int version) {
  std::string error;
  m_database->setErrorHandler(KeepError, &error);
  dbCursor<numbered> all(m_database.get(), dbCursorForUpdate);
  all.removeAll();
  for (int i = 0; i < CountOf(version); ++i) {
    const std::string id = IdOf(i);
    numbered row;
    row.id = id.c_str();
    row.version = version;
    m_database->insert(row);
  }
  m_database->commit();
  if (!error.empty()) throw std::runtime_error(error);
}

FoundVersion ReadVersion(Kept kept, const fs::path& folder) {
  const fs::path path = folder / NameOf(kept);
  if (kept == Kept::kStore) return ReadRows(path);
  try {
    DTSDB model;
    if (kept == Kept::kTextTables) {
      if (!tools::FindTextTables(path.string())) return {};
      tools::ReadTextTables(path.string(), model);
    } else {
      if (!fs::exists(path)) return {};
      const QString failure = ReadObjectFile(model, QString::fromStdString(path.string()));
      if (!failure.isNull()) return {0, failure.trimmed().toStdString()};
    }
    FoundVersion found = VersionOf(model);
    if (found.version == 0 && found.wrong.empty()) found.wrong = "nothing is in it";
    return found;
  } catch (const std::exception& error) {
    return {0, error.what()};
  }
}

}  // namespace dtsdb::test

#include "rtdb/database.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <set>

#include "rtdb/file_name.h"
#include "rtdb/internal/context.h"
#include "rtdb/internal/selection.h"

using dtsdb::internal::rtdb::Context;
using dtsdb::internal::rtdb::LoadedRow;
using dtsdb::internal::rtdb::RowPlan;
using dtsdb::internal::rtdb::Selection;
using dtsdb::internal::rtdb::Status;
using dtsdb::internal::rtdb::Store;
using dtsdb::internal::rtdb::Table;
using dtsdb::rtdb::FileOf;

namespace {

/// By dbErrorClass.
constexpr std::array<const char*, 17> kErrorWords = {
    "no error",      "query",    "arithmetic",       "index out of range", "open",  "file",
    "out of memory", "deadlock", "no such row",      "lock revoked",       "limit", "inverse reference",
    "read only",     "cursor",   "view-only cursor", "no such table",      "thread"};

}  // namespace

dbDatabase::dbDatabase(dbAccessType access) : m_access(access) {}

dbDatabase::~dbDatabase() {
  if (m_store == nullptr) return;
  Context::Detach(m_store.get());
  m_store->Close();
  ReleaseTables();
}

bool dbDatabase::open(char const* databaseName, char const* fileName) {
  if (m_store != nullptr) {
    handleError(DatabaseOpenError, "the database is already open");
    return false;
  }
  const std::string path = fileName != nullptr ? fileName : FileOf(databaseName == nullptr ? "" : databaseName);
  AssignTables();
  Status status;
  const Store::Use use = m_access == dbReadOnly    ? Store::Use::kRead
                         : m_access == dbAllAccess ? Store::Use::kChange
                                                   : Store::Use::kKeepCopy;
  m_store = Store::Open(path, use, m_sizeLimit, m_tables, status);
  if (m_store == nullptr) {
    ReleaseTables();
    return Report(status);
  }
  Context::Attach(m_store);
  return true;
}

void dbDatabase::close() {
  if (m_store == nullptr) return;
  if (Context* context = Context::Find(m_store.get())) Report(context->Commit());
  const std::shared_ptr<Store> store = std::move(m_store);
  m_store = nullptr;
  Context::Detach(store.get());
  store->Close();
  ReleaseTables();
}

void dbDatabase::AssignTables() {
  const std::lock_guard lock(dbTableDescriptor::RegistryMutex());
  std::set<std::string> names;
  for (dbTableDescriptor* descriptor : dbTableDescriptor::Registered()) {
    dbTableDescriptor* own = descriptor;
    if (descriptor->m_registeredFor == DETACHED_TABLE) {
      const auto kept = std::find_if(m_clones.begin(), m_clones.end(),
                                     [descriptor](const auto& clone) { return clone->m_name == descriptor->m_name; });
      if (kept == m_clones.end()) {
        m_clones.emplace_back(new dbTableDescriptor(*descriptor, this));
        own = m_clones.back().get();
      } else {
        own = kept->get();
      }
    } else if (descriptor->m_database != nullptr ||
               (descriptor->m_registeredFor != nullptr && descriptor->m_registeredFor != this)) {
      continue;
    }
    if (!names.insert(own->m_name).second) continue;
    own->m_database = this;
    own->m_slot = static_cast<int>(m_tables.size());
    m_tables.push_back(own);
  }
}

void dbDatabase::ReleaseTables() {
  const std::lock_guard lock(dbTableDescriptor::RegistryMutex());
  for (dbTableDescriptor* table : m_tables) {
    table->m_database = nullptr;
    table->m_slot = -1;
  }
  m_tables.clear();
}

dbTableDescriptor* dbDatabase::lookupTable(dbTableDescriptor* descriptor) {
  return descriptor == nullptr ? nullptr : findTableByName(descriptor->getName());
}

dbTableDescriptor* dbDatabase::findTableByName(char const* name) {
  const auto found =
      std::find_if(m_tables.begin(), m_tables.end(), [name](const auto* table) { return table->m_name == name; });
  return found == m_tables.end() ? nullptr : *found;
}

void dbDatabase::attach() {
  if (m_store != nullptr) {
    Context::Attach(m_store);
  } else {
    handleError(DatabaseOpenError, "attach to a database that is not open");
  }
}

void dbDatabase::detach(int flags) {
  if (m_store == nullptr) return;
  Context* context = Context::Find(m_store.get());
  if (context == nullptr) return;
  const Status status = (flags & COMMIT) != 0 ? context->Commit() : Status();
  if ((flags & DESTROY_CONTEXT) != 0) {
    Context::Detach(m_store.get());
  } else {
    context->Rollback();
  }
  Report(status);
}

bool dbDatabase::backup(char const* file, bool compactify) {
  Context* context = Attached();
  return context != nullptr && Report(m_store->File().Copy(file, compactify));
}

void dbDatabase::commit() {
  if (Context* context = Attached()) Report(context->Commit());
}

void dbDatabase::rollback() {
  if (Context* context = Attached()) context->Rollback();
}

Context* dbDatabase::Attached() {
  if (m_store == nullptr) {
    handleError(DatabaseOpenError, "the database is not open");
    return nullptr;
  }
  Context* context = Context::Find(m_store.get());
  if (context == nullptr) handleError(NotAttached, "the thread is not attached to the database");
  return context;
}

Table* dbDatabase::TableOf(dbTableDescriptor* descriptor) {
  if (descriptor != nullptr && descriptor->m_database == this && descriptor->m_slot >= 0) {
    return &m_store->At(descriptor->m_slot);
  }
  const std::string name = descriptor == nullptr ? "" : std::string(" ") + descriptor->getName();
  handleError(TableNotFound, ("the database has no such table" + name).c_str());
  return nullptr;
}

bool dbDatabase::insertRecord(dbTableDescriptor* descriptor, dbAnyReference* reference, void const* record) {
  Context* context = Attached();
  const Table* table = context == nullptr ? nullptr : TableOf(descriptor);
  oid_t number = 0;
  const bool stored = table != nullptr && Report(context->Insert(*table, record, number));
  if (reference != nullptr) *reference = dbAnyReference(number);
  return stored;
}

bool dbDatabase::insertRecordAs(oid_t oid, dbTableDescriptor* descriptor, void const* record) {
  Context* context = Attached();
  const Table* table = context == nullptr ? nullptr : TableOf(descriptor);
  return table != nullptr && Report(context->InsertAs(*table, record, oid));
}

void dbDatabase::update(oid_t oid, dbTableDescriptor* descriptor, void const* record) {
  Context* context = Attached();
  const Table* table = context == nullptr ? nullptr : TableOf(descriptor);
  if (table == nullptr || !Report(context->BeginWrite())) return;
  std::shared_ptr<const RowPlan> plan;
  if (!Report(context->PlanOf(*table, plan))) return;
  oid_t current = 0;
  Selection selection(current);
  LoadedRow row;
  bool found = false;
  if (!Report(selection.RunFor(*context, *table, plan, oid)) || !Report(selection.Load(0, row, found))) return;
  if (found && !Report(context->Replace(*table, row, record, found))) return;
  if (!found) handleError(NullReferenceError, "row to update has gone");
}

void dbDatabase::deleteTable(dbTableDescriptor* descriptor) {
  Context* context = Attached();
  const Table* table = context == nullptr ? nullptr : TableOf(descriptor);
  if (table != nullptr) Report(context->RemoveAll(*table));
}

std::uint64_t dbDatabase::changeNumber(dbTableDescriptor* descriptor) {
  Context* context = Attached();
  const Table* table = context == nullptr ? nullptr : TableOf(descriptor);
  std::uint64_t number = 0;
  return table != nullptr && Report(context->ChangeNumber(*table, number)) ? number : 0;
}

std::uint64_t dbDatabase::lastCommitNumber() {
  const Context* context = Attached();
  return context == nullptr ? 0 : context->LastCommit();
}

bool dbDatabase::setCopyNote(std::string_view note) {
  Context* context = Attached();
  return context != nullptr && Report(context->SetCopyNote(note));
}

bool dbDatabase::moveCopyNote(std::string_view from, std::string_view to) {
  Context* context = Attached();
  std::string note;
  return context != nullptr && Report(context->BeginWrite()) && Report(context->CopyNote(note)) && note == from &&
         Report(context->SetCopyNote(to));
}

std::string dbDatabase::copyNote() {
  Context* context = Attached();
  std::string note;
  return context != nullptr && Report(context->CopyNote(note)) ? note : std::string();
}

std::uint64_t dbDatabase::openingNumber() const { return m_store == nullptr ? 0 : m_store->OpeningNumber(); }

dbDatabase::dbErrorHandler dbDatabase::setErrorHandler(dbErrorHandler handler, void* context) {
  m_errorContext = context;
  return std::exchange(m_errorHandler, handler);
}

void dbDatabase::handleError(dbErrorClass error, char const* message, int argument) {
  if (m_errorHandler != nullptr) {
    m_errorHandler(error, message, argument, m_errorContext);
    return;
  }
  const auto index = static_cast<std::size_t>(error);
  const char* words = index < kErrorWords.size() ? kErrorWords[index] : "error";
  std::fprintf(stderr, "realtime store: %s: %s\n", words, message == nullptr ? "" : message);
}

bool dbDatabase::Report(const Status& status) {
  if (!status && !status.text.empty()) handleError(status.error, status.text.c_str());
  return status.ok;
}

#include "rtdb/descriptors.h"

#include <algorithm>
#include <cstring>
#include <iterator>

dbFieldList operator,(dbFieldList first, dbFieldList second) {
  first.insert(first.end(), std::make_move_iterator(second.begin()), std::make_move_iterator(second.end()));
  return first;
}

std::vector<dbTableDescriptor*>& dbTableDescriptor::Registered() {
  // Never destroyed: descriptors of other files may go after it would have.
  static auto* const tables = new std::vector<dbTableDescriptor*>;
  return *tables;
}

std::mutex& dbTableDescriptor::RegistryMutex() {
  static auto* const mutex = new std::mutex;  // never destroyed either
  return *mutex;
}

dbTableDescriptor::dbTableDescriptor(char const* name, dbDatabase* database, std::size_t size, Describe describe)
    : m_registeredFor(database), m_database(nullptr), m_size(size), m_fields(describe()) {
  const char* colon = std::strrchr(name, ':');
  m_name = colon == nullptr ? name : colon + 1;
  const std::lock_guard lock(RegistryMutex());
  Registered().push_back(this);
}

dbTableDescriptor::dbTableDescriptor(const dbTableDescriptor& original, dbDatabase* database)
    : m_name(original.m_name),
      m_registeredFor(database),
      m_database(database),
      m_size(original.m_size),
      m_fields(original.m_fields) {}

dbTableDescriptor::~dbTableDescriptor() {
  const std::lock_guard lock(RegistryMutex());
  std::erase(Registered(), this);
}

const dbFieldDescriptor* dbTableDescriptor::find(char const* name) const {
  const auto found =
      std::find_if(m_fields.begin(), m_fields.end(), [name](const dbFieldDescriptor& f) { return f.name == name; });
  return found == m_fields.end() ? nullptr : &*found;
}

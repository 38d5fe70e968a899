#include "model/dtsdb.h"

#include <algorithm>
#include <tuple>

namespace dtsdb {
namespace {

template <class... T>
std::tuple<tTable<T>...> TablesFor(TypeList<T...>);

}  // namespace

/// The tables that a container makes.
struct DTSDB::OwnTables {
  decltype(TablesFor(Records())) tables;
};

DTSDB::DTSDB() {
  const auto own = std::make_shared<OwnTables>();
  ForEachRecordClass([&]<class T> { TableMember<T>::Of(*this) = &std::get<tTable<T>>(own->tables); });
  m_owned.push_back(own);
}

DTSDB& DTSDB::operator=(const DTSDB& other) {
  if (this == &other) return *this;
  PointToTables(other, *this);
  for (const auto& tables : other.m_owned) {
    if (std::find(m_owned.begin(), m_owned.end(), tables) == m_owned.end()) m_owned.push_back(tables);
  }
  return *this;
}

}  // namespace dtsdb

#include "formats/record_places.h"

#include <concepts>
#include <type_traits>
#include <utility>

#include "model/branch_kinds.h"
#include "model/relations.h"

namespace dtsdb::tools {
namespace {

using Branches = TypeList<CB, LN, DLN, XF, ZBR>;

template <class T>
concept IsRelation = requires {
  sizeof(Relation<T>);
};

template <class T>
concept HasStation = requires(const T& record) {
  { record.st } -> std::convertible_to<QString>;
};
template <class T>
concept HasOtherStation = requires(const T& record) {
  { record.zst } -> std::convertible_to<QString>;
};
template <class T>
concept HasLevel = requires(const T& record) {
  { record.kv } -> std::convertible_to<QString>;
};
template <class T>
concept HasOtherLevel = requires(const T& record) {
  { record.zkv } -> std::convertible_to<QString>;
};

/// Collects the places of a record.
class PlaceCollector {
 public:
  explicit PlaceCollector(DTSDB& database) : m_database(database) {}

  template <class T>
  void Add(const T& record) {
    if constexpr (std::is_same_v<T, ST>) m_places.stations.push_back(record.id);
    if constexpr (std::is_same_v<T, KV>) m_places.levels.push_back(record.id);
    if constexpr (HasStation<T>) m_places.stations.push_back(record.st);
    if constexpr (HasOtherStation<T>) m_places.stations.push_back(record.zst);
    if constexpr (HasLevel<T>) AddLevel(record.kv);
    if constexpr (HasOtherLevel<T>) AddLevel(record.zkv);
    if constexpr (std::is_same_v<T, BS> || std::is_same_v<T, CHND>) AddNumbered<KV>(record.ikv);
    if constexpr (std::is_same_v<T, ZBR>) AddNumbered<CB>(m_database.m_cbTable->Find(CB(record.cb)));
    if constexpr (std::is_same_v<T, ND>) AddLevelOfNode(record);
    if constexpr (IsRelation<T>) AddNumbered<typename Relation<T>::Child>(record.ChildNumber());
    ForEachType(Branches(), [&]<class Branch> {
      using Kind = BranchKind<Branch>;
      if constexpr (std::is_same_v<T, typename Kind::End>) AddNumbered<Branch>(record.*Kind::kOwner);
    });
  }

  RecordPlaces Take() { return std::move(m_places); }

 private:
  template <class T>
  void AddNumbered(int number) {
    tTable<T>& table = TableOf<T>(m_database);
    if (number >= 0 && number < table.GetSize()) Add(table.GetPh(number));
  }

  void AddLevel(const QString& id) { AddNumbered<KV>(m_database.m_kvTable->Find(KV(id))); }

  void AddLevelOfNode(const ND& node) {
    const tTable<R_KV_ND>& rows = *m_database.m_rKvNdTable;
    if (node.r_kv_nd >= 0 && node.r_kv_nd < rows.GetSize()) AddNumbered<KV>(rows.GetPh(node.r_kv_nd).ikv);
  }

  DTSDB& m_database;
  RecordPlaces m_places;
};

}  // namespace

RecordPlaces PlacesOf(DTSDB& database, TableKind kind, const void* record) {
  PlaceCollector places(database);
  ForEachRecordClass([&]<class T> {
    if (T::kKind == kind) places.Add(*static_cast<const T*>(record));
  });
  return places.Take();
}

}  // namespace dtsdb::tools

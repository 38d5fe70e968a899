/// \file
/// What a model's numbers lead to, as text: for comparing models whose numbers differ.
#pragma once

#include <map>
#include <set>
#include <string>

#include "tests/validation/run.h"

namespace dtsdb::test {

/// The derived part of a model: each entry names a record and a field, or a parent and its chain, and holds the
/// identities that the numbers there lead to.
class ModelLinks {
 public:
  explicit ModelLinks(DTSDB& database) : m_database(database) {
    ForEachRelation([this]<class Row> { AddRelation<Row>(); });
    AddBranch<CB>();
    AddBranch<XF>();
    AddBranch<ZBR>();
    AddBranch<LN>();
    AddBranch<DLN>();
    AddNumbers<BUS>();
    AddNumbers<LD>();
    AddNumbers<UN>();
    AddNumbers<CP>();
    ForEach<ND>([&](const ND& nd) { Add(nd, "flags", std::to_string(nd.flags)); });
    ForEach<ST>([&](const ST& st) { Add(st, "flag", std::to_string(st.flag)); });
    ForEach<CB>([&](const CB& cb) { Add(cb, "flags", std::to_string(cb.flags)); });
    ForEach<LN>([&](const LN& ln) { Add(ln, "status", std::to_string(ln.status)); });
    ForEach<DLN>([&](const DLN& dln) { Add(dln, "status", std::to_string(dln.status)); });
  }

  using Entries = std::map<std::string, std::string>;
  const Entries& All() const { return m_entries; }

  /// Leaves out the entries of field or chain `field` in table `table`.
  void Drop(const std::string& table, const std::string& field) {
    std::erase_if(m_entries, [&](const auto& entry) {
      return entry.first.starts_with(table + " ") && entry.first.ends_with(" " + field);
    });
  }

  /// Takes bits out of the flags of all nodes.
  static void ClearNodeMark(DTSDB& database, u32 mark) {
    for (int i = 0; i < database.m_ndTable->GetCount(); ++i) (*database.m_ndTable)[i].flags &= ~mark;
  }

 private:
  template <class T, class Visit>
  void ForEach(Visit visit) {
    tTable<T>& table = TableOf<T>(m_database);
    for (int i = 0; i < table.GetCount(); ++i) visit(table[i]);
  }

  template <class T>
  static std::string Key(const T& record) {
    if constexpr (T::kKey == RecordKey::kRelation) {
      return Utf8(record.*Relation<T>::kParentId) + ">" + Utf8(record.*Relation<T>::kChildId);
    } else {
      return Utf8(record.id);
    }
  }

  template <class T>
  void Add(const T& record, const std::string& field, const std::string& value) {
    m_entries[std::string(T::kTableName) + " " + Key(record) + " " + field] = value;
  }

  /// The record that a number leads to.
  template <class T>
  std::string Named(int number) {
    tTable<T>& table = TableOf<T>(m_database);
    if (number == -1) return "none";
    const bool isUsed = number >= 0 && number < table.GetSize() && table.IsUsed(number);
    return isUsed ? Key(table.GetPh(number)) : "nothing";
  }

  template <class Row>
  void AddRelation() {
    using R = Relation<Row>;
    ForEach<Row>([&](const Row& row) {
      Add(row, "parent", Named<typename R::Parent>(row.*R::kParentNumber));
      Add(row, "child", Named<typename R::Child>(row.*R::kChildNumber));
    });
    ForEach<typename R::Parent>([&](const typename R::Parent& parent) {
      const Texts chain = ChainOf<Row>(m_database, parent.*R::kHead);
      std::string children;
      for (const std::string& child : std::multiset<std::string>(chain.begin(), chain.end())) children += child + ",";
      Add(parent, std::string(Row::kTableName), children);
    });
    ForEach<typename R::Child>(
        [&](const typename R::Child& child) { Add(child, "own row", Named<Row>(child.*R::kOwn)); });
  }

  /// The nodes, measurements, breaker and status point of a record.
  template <class Record>
  void AddNumbers() {
    ForEach<Record>([&](const Record& record) {
      for (const FieldInfo& field : Record::Fields()) {
        if (field.type != FieldType::kI32) continue;
        const std::string name = field.name;
        const i32 number = field.In<i32>(&record);
        if (name == "ind" || name == "iznd") Add(record, name, Named<ND>(number));
        if (name.starts_with("iana_") || name.starts_with("izana_")) Add(record, name, Named<ANALOG>(number));
        if (name == "istatus") Add(record, name, Named<STATUS>(number));
        if (name == "icb" && std::is_same_v<Record, ZBR>) Add(record, name, Named<CB>(number));
      }
    });
  }

  template <class Branch>
  void AddBranch() {
    using Kind = BranchKind<Branch>;
    using End = typename Kind::End;
    AddNumbers<Branch>();
    AddNumbers<End>();
    ForEach<Branch>([&](const Branch& branch) {
      Add(branch, "from end", Named<End>(branch.*Kind::kFromEnd));
      Add(branch, "to end", Named<End>(branch.*Kind::kToEnd));
    });
    ForEach<End>([&](const End& end) {
      Add(end, "owner", Named<Branch>(end.*Kind::kOwner));
      if constexpr (Kind::kMeasured) Add(end, "flags", std::to_string(end.flags));
    });
  }

  DTSDB& m_database;
  Entries m_entries;
};

}  // namespace dtsdb::test

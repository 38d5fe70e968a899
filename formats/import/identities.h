/// \file
/// The identities of records: the names of objects, made unique in their tables and fit for the model's texts.
#pragma once

#include <QString>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "formats/import_report.h"
#include "model/table_kinds.h"

namespace dtsdb::tools {

/// A real text with what the model's texts can't hold written without its accent, or else as '?'.
QString Representable(const QString& text);

/// What an object of an exchange format is called, in UTF-8.
struct ObjectName {
  std::string id;    ///< its mRID or id, unique in what is imported
  std::string name;  ///< what people call it, or else its id
  int file = -1;     ///< place in ImportReport::files of the file that defines it, -1 for none
  int line = 0;      ///< in that file
};

/// Identities of records by the object that they stand for, which is known by a number. An object may stand behind
/// several records of one table, its parts; part 0 is the whole.
class Identities {
 public:
  /// Objects are called as `nameOf` has it. With `usesIds` identities are their ids, else names.
  Identities(std::function<ObjectName(int)> nameOf, bool usesIds) : m_nameOf(std::move(nameOf)), m_usesIds(usesIds) {}

  /// An object becomes a record of `table`. `suffix` is put behind its name, `container` is the identity of what
  /// contains it.
  void Add(TableKind table, int object, const QString& container = {}, int part = 0, const QString& suffix = {});
  /// Something that is no object becomes one and is called `name`. It is found by `number`, which no object of this
  /// table has.
  void AddMade(TableKind table, int number, const QString& name, const QString& container = {});

  /// Makes the identities of a table from what was added: a name that stands for one object only; "container/name"
  /// where several have it, and a number behind that where this isn't enough, in the order of the ids.
  void Settle(TableKind table);

  bool Has(TableKind table, int object, int part = 0) const;
  /// The identity of a record, as the model has it. Null for one that wasn't added.
  QString Id(TableKind table, int object, int part = 0) const;
  /// The same as real text.
  QString Text(TableKind table, int object, int part = 0) const;

  /// All records that stand for objects, by table and identity.
  std::vector<ImportReport::Identity> List() const;

 private:
  struct Entry {
    int object;
    int part;
    bool isMade;  ///< stands for no object
    QString text;
    QString container;
    std::string order;  ///< id and part
    QString id;
  };
  struct Table {
    std::vector<Entry> entries;
    std::unordered_map<long long, std::size_t> places;  ///< by object and part
  };

  void AddEntry(TableKind table, Entry entry);
  const Entry* Find(TableKind table, int object, int part) const;

  std::function<ObjectName(int)> m_nameOf;
  bool m_usesIds;
  std::unordered_map<int, Table> m_tables;
};

}  // namespace dtsdb::tools

/// \file
/// The identities of records: the names of objects, made unique in their tables and fit for the model's texts.
#pragma once

#include <QString>
#include <string>
#include <unordered_map>
#include <vector>

#include "formats/cgmes/objects.h"
#include "formats/import_report.h"
#include "model/table_kinds.h"

namespace dtsdb::tools::cgmes {

/// A real text with what the model's texts can't hold written without its accent, or else as '?'.
QString Representable(const QString& text);

/// Identities of records by the object that they stand for. An object may stand behind several records of one table,
/// its parts; part 0 is the whole.
class Identities {
 public:
  /// With `usesMrids` identities are mRIDs, else names.
  Identities(const Objects& objects, bool usesMrids) : m_objects(objects), m_usesMrids(usesMrids) {}

  /// An object becomes a record of `table`. `suffix` is put behind its name, `container` is the identity of what
  /// contains it.
  void Add(TableKind table, int object, const QString& container = {}, int part = 0, const QString& suffix = {});
  /// Something that is no object becomes one: `name` is its identity.
  void AddMade(TableKind table, const QString& name) { AddNamed(table, Objects::kNone, 0, name, {}, {}); }

  /// Makes the identities of a table from what was added: a name that stands for one object only; "container/name"
  /// where several have it, and a number behind that where this isn't enough, in the order of the mRIDs.
  void Settle(TableKind table);

  bool Has(TableKind table, int object, int part = 0) const;
  /// The identity of a record, as the model has it. Null for one that wasn't added.
  QString Id(TableKind table, int object, int part = 0) const;
  /// The same as real text.
  QString Text(TableKind table, int object, int part = 0) const;

  /// All records, by table and identity.
  std::vector<ImportReport::Identity> List() const;

 private:
  struct Entry {
    int object;
    int part;
    QString text;
    QString container;
    std::string order;  ///< mRID and part
    QString id;
  };
  struct Table {
    std::vector<Entry> entries;
    std::unordered_map<long long, std::size_t> places;  ///< by object and part
  };

  void AddNamed(TableKind table, int object, int part, const QString& name, const QString& container,
                const std::string& order);
  const Entry* Find(TableKind table, int object, int part) const;

  const Objects& m_objects;
  bool m_usesMrids;
  std::unordered_map<int, Table> m_tables;
};

}  // namespace dtsdb::tools::cgmes

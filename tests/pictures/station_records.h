/// \file
/// The records that belong to each station, found in the tables by the names that the records give.
#pragma once

#include <QString>
#include <map>
#include <string>

#include "formats/field_text.h"
#include "model/dtsdb.h"

namespace dtsdb::pictures::test {

/// How often each record stands in the picture of a station, by "TABLE identity".
using RecordCounts = std::map<std::string, int>;

class StationRecords {
 public:
  explicit StationRecords(DTSDB& tables) : m_tables(tables) {
    ForEach<ST>([&](const ST& station) { Add(station.id, station); });
    ForEach<KV>([&](const KV& level) {
      m_stationOf[level.id] = level.st;
      Add(level.st, level);
    });
    ForEach<R_KV_ND>([&](const R_KV_ND& row) { Add(m_stationOf[row.kv_id], ND(row.nd_id)); });
    AddOnLevels<BUS>();
    AddOnLevels<CB>();
    AddOnLevels<UN>();
    AddOnLevels<LD>();
    AddOnLevels<CP>();
    ForEach<ZBR>(
        [&](const ZBR& zbr) { Add(m_stationOf[(*tables.m_cbTable)[tables.m_cbTable->Find(CB(zbr.cb))].kv], zbr); });
    ForEach<XF>([&](const XF& winding) {
      Add(m_stationOf[winding.kv], winding);
      if (m_stationOf[winding.kv] != m_stationOf[winding.zkv]) Add(m_stationOf[winding.zkv], winding);
    });
    AddEnds<LN>();
    AddEnds<DLN>();
  }

  const RecordCounts& Of(const QString& station) { return m_records[station]; }

 private:
  template <class T, class Visit>
  void ForEach(Visit visit) {
    tTable<T>& table = TableOf<T>(m_tables);
    for (int i = 0; i < table.GetCount(); ++i) visit(table[i]);
  }

  template <class T>
  void Add(const QString& station, const T& record) {
    ++m_records[station][std::string(T::kTableName) + " " + tools::IdText(record.id)];
  }

  template <class T>
  void AddOnLevels() {
    ForEach<T>([&](const T& record) { Add(m_stationOf[record.kv], record); });
  }

  /// A line stands in the station of each end.
  template <class T>
  void AddEnds() {
    ForEach<T>([&](const T& line) {
      Add(line.st, line);
      Add(line.zst, line);
    });
  }

  DTSDB& m_tables;
  std::map<QString, QString> m_stationOf;
  std::map<QString, RecordCounts> m_records;
};

}  // namespace dtsdb::pictures::test

#include "formats/xiidm/export_plan.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "formats/failure.h"
#include "formats/text_layout.h"
#include "model/branch_kinds.h"
#include "model/record_bits.h"
#include "model/text.h"

namespace dtsdb::tools::xiidm {
namespace {

/// A text without what XML can't hold.
QString Writable(const QString& id) {
  QString text = TextFromId(id);
  for (QChar& c : text) {
    if (c.unicode() < 0x20 || c.unicode() >= 0xFFFE) c = u'?';
  }
  return text;
}

/// The rows of a table in a key.
template <class T>
QHash<QString, int> RowsById(const tTable<T>& table) {
  QHash<QString, int> rows;
  for (int i = 0; i < table.GetCount(); ++i) rows.insert(table[i].id, i);
  return rows;
}

bool IsVoltage(double voltage) { return std::isfinite(voltage) && voltage > 0; }

QString Numbered(const QString& name, int number) { return name + QLatin1Char(' ') + QString::number(number); }

/// A winding that ends in a star point, and there carries what flows into it.
bool IsWindingToStar(const XF& row, const KV& star, const QString& name, int number) {
  constexpr u32 kNotOpenable = BranchKind<XF>::kOut | BranchKind<XF>::kOpen2;
  return row.type == number && TextFromId(row.id) == Numbered(name, number) && row.zkv == star.id &&
         row.znd == star.id && row.kv != star.id && row.st == star.st && row.p == row.zp && row.q == row.zq &&
         (row.status & kNotOpenable) == 0;
}

class Planning {
 public:
  explicit Planning(const DTSDB& model) : m_model(model) {}

  ExportPlan Plan() {
    PlanStations();
    PlanLevels();
    PlanStars();
    PlanBranchesOnBreakers();
    PlanBreakers();
    PlanDevices<BUS>(m_plan.buses, &PlannedLevel::buses);
    PlanDevices<UN>(m_plan.units, &PlannedLevel::units);
    PlanDevices<LD>(m_plan.loads, &PlannedLevel::loads);
    PlanDevices<CP>(m_plan.shunts, &PlannedLevel::shunts);
    PlanLines<LN>(m_plan.lines);
    PlanWindings();
    PlanLines<DLN>(m_plan.dcLines);
    PlanConverters();
    return std::move(m_plan);
  }

 private:
  /// Refuses a record that names another that isn't there.
  template <class T>
  [[noreturn]] void Refuse(const T& row, const char* table, const QString& missing) const {
    throw Failure(kExitFile, fmt::format("{} {} names the {} {}, which isn't there: no XIIDM can be written; 'dtsdb "
                                         "validate' lists all faults",
                                         T::kTableName, Quoted(TextFromId(row.id).toStdString()), table,
                                         Quoted(TextFromId(missing).toStdString())));
  }

  template <class T>
  int LevelOf(const T& row, const QString& level) const {
    const int found = m_levelRows.value(level, -1);
    if (found < 0) Refuse(row, "KV", level);
    return found;
  }

  template <class T>
  int StationOf(const T& row) const {
    const int found = m_stationRows.value(row.st, -1);
    if (found < 0) Refuse(row, "ST", row.st);
    return found;
  }

  /// An id that nothing else in the file has: `text`, or else with its table and a number.
  QString UniqueId(const char* table, const QString& text) {
    QString id = text;
    const QString withTable = QLatin1String(table) + QLatin1Char(' ') + text;
    if (id.isEmpty() || m_used.contains(id)) id = withTable;
    while (m_used.contains(id)) {
      int& number = m_lastNumber[withTable];
      number = std::max(number + 1, 2);
      id = withTable + QStringLiteral(" (%1)").arg(number);
    }
    m_used.insert(id);
    return id;
  }

  FileName NameOf(const char* table, const QString& text) {
    FileName name{UniqueId(table, text), {}};
    if (name.id != text) name.name = text;
    return name;
  }

  template <class T>
  FileName NameOf(const T& row) {
    return NameOf(T::kTableName, Writable(row.id));
  }

  void PlanStations() {
    const auto& stations = TableOf<ST>(m_model);
    m_stationRows = RowsById(stations);
    for (int i = 0; i < stations.GetCount(); ++i) m_plan.stations.push_back(NameOf(stations[i]));
    m_plan.levelsOf.resize(m_plan.stations.size());
    m_plan.windingsOf.resize(m_plan.stations.size());
    m_plan.starsOf.resize(m_plan.stations.size());
    const auto& districts = TableOf<DV>(m_model);
    for (int i = 0; i < districts.GetCount(); ++i) m_plan.companies.insert(districts[i].id, districts[i].co);
  }

  void PlanLevels() {
    const auto& levels = TableOf<KV>(m_model);
    m_levelRows = RowsById(levels);
    for (int i = 0; i < levels.GetCount(); ++i) {
      PlannedLevel& level = m_plan.levels.emplace_back();
      level.name = NameOf(levels[i]);
      level.station = StationOf(levels[i]);
      level.nominal = levels[i].vbase;
    }
    m_numbers.resize(m_plan.levels.size());
    m_taken.resize(m_plan.levels.size());
    SetNominalVoltages();
  }

  /// The format wants a nominal voltage everywhere: that of the other end of a line, or else 1 kV.
  void SetNominalVoltages() {
    const auto& lines = TableOf<LN>(m_model);
    for (int i = 0; i < lines.GetCount(); ++i) {
      const int from = m_levelRows.value(lines[i].kv, -1);
      const int to = m_levelRows.value(lines[i].zkv, -1);
      if (from < 0 || to < 0) continue;
      double& one = m_plan.levels[static_cast<std::size_t>(from)].nominal;
      double& other = m_plan.levels[static_cast<std::size_t>(to)].nominal;
      if (!IsVoltage(one)) one = other;
      if (!IsVoltage(other)) other = one;
    }
    for (PlannedLevel& level : m_plan.levels) {
      if (!IsVoltage(level.nominal)) level.nominal = 1;
    }
  }

  /// How often equipment names each level.
  std::vector<int> UsesOfLevels() const {
    std::vector<int> uses(m_plan.levels.size());
    const auto count = [&]<class T>(const tTable<T>& table, auto... fields) {
      for (int i = 0; i < table.GetCount(); ++i) {
        for (const QString& level : {table[i].*fields...}) {
          const int found = m_levelRows.value(level, -1);
          if (found >= 0) ++uses[static_cast<std::size_t>(found)];
        }
      }
    };
    count(TableOf<BUS>(m_model), &BUS::kv);
    count(TableOf<CB>(m_model), &CB::kv);
    count(TableOf<UN>(m_model), &UN::kv);
    count(TableOf<LD>(m_model), &LD::kv);
    count(TableOf<CP>(m_model), &CP::kv);
    count(TableOf<LN>(m_model), &LN::kv, &LN::zkv);
    count(TableOf<XF>(m_model), &XF::kv, &XF::zkv);
    count(TableOf<DLN>(m_model), &DLN::kv, &DLN::zkv);
    return uses;
  }

  void PlanStars() {
    const std::vector<int> uses = UsesOfLevels();
    const QHash<QString, int> windings = RowsById(TableOf<XF>(m_model));
    const auto& levels = TableOf<KV>(m_model);
    for (int i = 0; i < levels.GetCount(); ++i) {
      const auto station = static_cast<std::size_t>(m_plan.levels[static_cast<std::size_t>(i)].station);
      if (uses[static_cast<std::size_t>(i)] != 3 || !PlanStar(i, windings, station)) {
        m_plan.levelsOf[station].push_back(i);
      }
    }
  }

  /// Plans the star in a level. False where it isn't as the import of a transformer makes it.
  bool PlanStar(int level, const QHash<QString, int>& windings, std::size_t station) {
    const KV& row = TableOf<KV>(m_model)[level];
    const QString suffix = QStringLiteral(" star");
    QString name = TextFromId(row.id);
    if (!name.endsWith(suffix) || row.vbase != 0 || row.vmax != 0 || row.vmin != 0) return false;
    name.chop(suffix.size());
    Star star{{}, level, {}};
    for (int number = 1; number <= 3; ++number) {
      const auto id = IdFromText(Numbered(name, number));
      const int winding = id ? windings.value(*id, -1) : -1;
      if (winding < 0 || !IsWindingToStar(TableOf<XF>(m_model)[winding], row, name, number)) return false;
      star.windings[static_cast<std::size_t>(number) - 1] = winding;
    }
    for (const int winding : star.windings) m_ofStars.insert(winding);
    star.name = NameOf("XF", name);
    m_plan.starsOf[station].push_back(star);
    return true;
  }

  void PlanBranchesOnBreakers() {
    const QHash<QString, int> breakers = RowsById(TableOf<CB>(m_model));
    const auto& branches = TableOf<ZBR>(m_model);
    for (int i = 0; i < branches.GetCount(); ++i) {
      if (!breakers.contains(branches[i].cb)) Refuse(branches[i], "CB", branches[i].cb);
      m_plan.branches.insert(branches[i].cb, &branches[i]);
    }
  }

  /// The number of a node of ours in a level.
  int NodeOf(int level, const QString& node) {
    QHash<QString, int>& numbers = m_numbers[static_cast<std::size_t>(level)];
    const auto found = numbers.constFind(node);
    if (found != numbers.constEnd()) return *found;
    const int number = AddNode(level, Writable(node));
    numbers.insert(node, number);
    return number;
  }

  int AddNode(int level, const QString& text) {
    std::vector<QString>& nodes = m_plan.levels[static_cast<std::size_t>(level)].nodes;
    nodes.push_back(text);
    return static_cast<int>(nodes.size()) - 1;
  }

  /// The node for an end of `equipment`: our node itself for the first that stands on it, another that is joined to it
  /// for those behind; one behind an open switch for an end that isn't connected.
  PlannedEnd Attach(const FileName& equipment, int level, const QString& node, bool isConnected) {
    const int number = NodeOf(level, node);
    PlannedLevel& planned = m_plan.levels[static_cast<std::size_t>(level)];
    if (!isConnected) {
      const int behind = AddNode(level, {});
      planned.disconnectors.push_back({UniqueId("CB", equipment.id + QStringLiteral(" off")), number, behind});
      return {level, behind};
    }
    QSet<int>& taken = m_taken[static_cast<std::size_t>(level)];
    if (!taken.contains(number)) {
      taken.insert(number);
      return {level, number};
    }
    const int own = AddNode(level, {});
    planned.joined.emplace_back(number, own);
    return {level, own};
  }

  /// A switch may share its nodes with equipment, but not both of its ends with each other.
  void PlanBreakers() {
    const auto& breakers = TableOf<CB>(m_model);
    for (int i = 0; i < breakers.GetCount(); ++i) {
      const int level = LevelOf(breakers[i], breakers[i].kv);
      PlannedLevel& planned = m_plan.levels[static_cast<std::size_t>(level)];
      planned.breakers.push_back(i);
      const int from = NodeOf(level, breakers[i].nd);
      int to = NodeOf(level, breakers[i].znd);
      if (from == to) {
        to = AddNode(level, {});
        planned.joined.emplace_back(from, to);
      }
      m_plan.breakers.push_back({NameOf(breakers[i]), {level, from}, {level, to}});
    }
  }

  template <class T>
  void PlanDevices(std::vector<PlannedRow>& rows, std::vector<int> PlannedLevel::*list) {
    const auto& table = TableOf<T>(m_model);
    for (int i = 0; i < table.GetCount(); ++i) {
      const int level = LevelOf(table[i], table[i].kv);
      (m_plan.levels[static_cast<std::size_t>(level)].*list).push_back(i);
      bool isOn = true;
      if constexpr (!std::is_same_v<T, BUS>) isOn = (table[i].status & SHUNT_OFF) == 0;
      const FileName name = NameOf(table[i]);
      rows.push_back({name, Attach(name, level, table[i].nd, isOn), {}});
    }
  }

  template <class T>
  PlannedEnd AttachFrom(const FileName& name, const T& row) {
    const bool isOpen = (row.status & (BranchKind<T>::kOut | BranchKind<T>::kOpen1)) != 0;
    return Attach(name, LevelOf(row, row.kv), row.nd, !isOpen);
  }
  template <class T>
  PlannedEnd AttachTo(const FileName& name, const T& row) {
    const bool isOpen = (row.status & (BranchKind<T>::kOut | BranchKind<T>::kOpen2)) != 0;
    return Attach(name, LevelOf(row, row.zkv), row.znd, !isOpen);
  }

  template <class T>
  void PlanLines(std::vector<PlannedRow>& rows) {
    const auto& table = TableOf<T>(m_model);
    for (int i = 0; i < table.GetCount(); ++i) {
      const FileName name = NameOf(table[i]);
      rows.push_back({name, AttachFrom(name, table[i]), AttachTo(name, table[i])});
    }
  }

  void PlanWindings() {
    const auto& table = TableOf<XF>(m_model);
    for (int i = 0; i < table.GetCount(); ++i) {
      PlannedRow& row = m_plan.windings.emplace_back();
      const int station = StationOf(table[i]);
      if (m_ofStars.contains(i)) {
        row.from = AttachFrom({UniqueId("XF", Writable(table[i].id)), {}}, table[i]);
        continue;
      }
      m_plan.windingsOf[static_cast<std::size_t>(station)].push_back(i);
      row.name = NameOf(table[i]);
      row.from = AttachFrom(row.name, table[i]);
      row.to = AttachTo(row.name, table[i]);
    }
  }

  void PlanConverters() {
    for (const PlannedRow& line : m_plan.dcLines) {
      m_plan.converters.push_back({UniqueId("DLN", line.name.id + QStringLiteral(" converter 1")),
                                   UniqueId("DLN", line.name.id + QStringLiteral(" converter 2"))});
      const auto& [one, other] = m_plan.converters.back();
      m_plan.levels[static_cast<std::size_t>(line.from.level)].converters.emplace_back(one, line.from.node);
      m_plan.levels[static_cast<std::size_t>(line.to.level)].converters.emplace_back(other, line.to.node);
    }
  }

  const DTSDB& m_model;
  ExportPlan m_plan;
  QHash<QString, int> m_stationRows;
  QHash<QString, int> m_levelRows;
  std::vector<QHash<QString, int>> m_numbers;  // of our nodes, by level
  std::vector<QSet<int>> m_taken;              // nodes with an end of equipment on them, by level
  QSet<int> m_ofStars;                         // windings
  QSet<QString> m_used;                        // ids
  QHash<QString, int> m_lastNumber;            // put behind a text that several records have
};

}  // namespace

ExportPlan PlanExport(const DTSDB& model) { return Planning(model).Plan(); }

}  // namespace dtsdb::tools::xiidm

#include "fuzz/any_model.h"

#include <QtGlobal>
#include <cmath>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "include/log_sink.h"
#include "model/record_bits.h"
#include "model/text.h"

namespace dtsdb::fuzz {

namespace {

constexpr int kMostStations = 4;
constexpr int kNodesOfLevel = 4;

QString Name(const char* kind, int number) { return IdFromBytes((kind + std::to_string(number)).c_str()); }
QString NodeOf(int level, int number) { return Name("N", level * kNodesOfLevel + number); }

template <class Record>
void Put(DTSDB& model, const Record& record) {
  TableOf<Record>(model).Add(record);
}

/// Fills a model level by level; station n has the levels 2n and 2n + 1.
class AnyModel {
 public:
  AnyModel(ByteSource& bytes, DTSDB& model) : m_bytes(bytes), m_model(model) {}

  void Fill() {
    Put(m_model, CO(Name("CO", 0)));
    DV dv(Name("DV", 0));
    dv.co = Name("CO", 0);
    Put(m_model, dv);
    m_stations = 1 + m_bytes.Below(kMostStations);
    for (int station = 0; station < m_stations; ++station) AddStation(station);
    for (int left = m_bytes.Below(40); left > 0; --left) AddEquipment();
  }

 private:
  void AddStation(int station) {
    ST st(Name("S", station));
    st.dv = Name("DV", 0);
    st.type = 8;
    Put(m_model, st);
    for (int level = 2 * station; level < 2 * station + 2; ++level) {
      KV kv(Name("K", level));
      kv.st = st.id;
      kv.vbase = 220;
      kv.vmax = 242;
      kv.vmin = 198;
      Put(m_model, kv);
      PutOnNode<BUS>(level, Name("M", level));
    }
  }

  void AddEquipment() {
    const int level = m_bytes.Below(2 * m_stations);
    const QString id = Name("E", m_number++);
    switch (m_bytes.Below(8)) {
      case 0:
        return PutOnNode<UN>(level, id);
      case 1:
        return PutOnNode<LD>(level, id);
      case 2:
        return PutOnNode<CP>(level, id);
      case 3:
        return AddWinding(level / 2, id);
      case 4:
        return AddLine<LN>(level, id);
      case 5:
        return AddLine<DLN>(level, id);
      default:
        return AddBreaker(level, id);
    }
  }

  QString AnyNode(int level) { return NodeOf(level, m_bytes.Below(kNodesOfLevel)); }

  template <class Device>
  void PutOnNode(int level, const QString& id) {
    Device device(id);
    device.kv = Name("K", level);
    device.nd = AnyNode(level);
    if constexpr (requires { device.p; }) device.p = static_cast<f32>(m_bytes.Byte());
    if constexpr (!std::is_same_v<Device, BUS>) {
      if (m_bytes.Chance(20)) device.status = SHUNT_OFF;
    }
    Put(m_model, device);
  }

  void AddBreaker(int level, const QString& id) {
    CB cb(id);
    cb.kv = Name("K", level);
    const int node = m_bytes.Below(kNodesOfLevel);
    cb.nd = NodeOf(level, node);
    cb.znd = NodeOf(level, (node + 1 + m_bytes.Below(kNodesOfLevel - 1)) % kNodesOfLevel);
    cb.flags = 1 | (m_bytes.Chance(30) ? CB_OPEN : 0);
    Put(m_model, cb);
    if (!m_bytes.Chance(20)) return;
    ZBR zbr(Name("Z", m_number));
    zbr.cb = id;
    SetStatus(zbr);
    Put(m_model, zbr);
  }

  void AddWinding(int station, const QString& id) {
    XF xf(id);
    xf.type = 1;
    xf.st = Name("S", station);
    SetEnds(xf, 2 * station, 2 * station + 1);
    Put(m_model, xf);
  }

  template <class Line>
  void AddLine(int level, const QString& id) {
    const int far = m_bytes.Below(2 * m_stations);
    if (far / 2 == level / 2) return;
    Line line(id);
    line.dv = Name("DV", 0);
    line.st = Name("S", level / 2);
    line.zst = Name("S", far / 2);
    SetEnds(line, level, far);
    Put(m_model, line);
  }

  template <class Branch>
  void SetEnds(Branch& branch, int from, int to) {
    branch.kv = Name("K", from);
    branch.zkv = Name("K", to);
    branch.nd = AnyNode(from);
    branch.znd = AnyNode(to);
    SetStatus(branch);
  }

  template <class Branch>
  void SetStatus(Branch& branch) {
    using Kind = BranchKind<Branch>;
    if (m_bytes.Chance(15)) branch.status |= Kind::kOut;
    if (m_bytes.Chance(15)) branch.status |= Kind::kOpen1;
    if (m_bytes.Chance(15)) branch.status |= Kind::kOpen2;
  }

  ByteSource& m_bytes;
  DTSDB& m_model;
  int m_stations = 1;
  int m_number = 0;
};

void Spoil(ByteSource& bytes, int, QString& value) { value = AnyIdentity(bytes); }

template <class Number>
void Spoil(ByteSource& bytes, int rows, Number& value) {
  if constexpr (std::is_floating_point_v<Number>) {
    using Limits = std::numeric_limits<Number>;
    const Number values[] = {Limits::quiet_NaN(),
                             Limits::infinity(),
                             -Limits::infinity(),
                             Limits::max(),
                             Limits::lowest(),
                             Limits::denorm_min(),
                             0,
                             -1};
    value = values[bytes.Below(8)];
  } else {
    const int choice = bytes.Below(10);
    using Limits = std::numeric_limits<i32>;
    const i32 values[] = {-2, -1, 0, rows, 300, 1 << 30, Limits::max(), Limits::min()};
    value = static_cast<Number>(choice < 8 ? values[choice] : bytes.Below(rows + 1));
  }
}

template <class T>
void DamageTable(ByteSource& bytes, tTable<T>& table) {
  std::vector<T> rows;
  for (int i = 0; i < table.GetCount(); ++i) rows.push_back(table[i]);
  if (rows.empty()) return;
  T& row = rows[static_cast<std::size_t>(bytes.Below(static_cast<int>(rows.size())))];
  int at = bytes.Below(static_cast<int>(T::Fields().size()));
  ForEachField(row, [&](const FieldInfo&, auto& value) {
    if (at-- == 0) Spoil(bytes, static_cast<int>(rows.size()), value);
  });
  table.SetData(rows.data(), static_cast<int>(rows.size()), false);
}

}  // namespace

bool Silence() {
  SetLogSink([](LogKind, std::string_view) {});
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  return true;
}

QString AnyIdentity(ByteSource& bytes) {
  static constexpr const char* kKinds[] = {"S", "K", "N", "M", "E", "Z", "CO", "DV"};
  static constexpr const char* kOthers[] = {"", "nowhere", "\xFF\x81", "\xD6\xD0", "a,\"b\"\r\n", " ", "ST"};
  const int choice = bytes.Below(10);
  if (choice < 8) return Name(kKinds[choice], bytes.Below(40));
  return IdFromBytes(kOthers[bytes.Below(7)]);
}

void FillSmallModel(DTSDB& model) {
  Put(model, CO(Name("CO", 1)));
  DV dv(Name("DV", 1));
  dv.co = Name("CO", 1);
  Put(model, dv);
  for (int i = 1; i <= 2; ++i) {
    ST st(Name("S", i));
    st.dv = dv.id;
    st.type = 8;
    Put(model, st);
    KV kv(Name("K", i));
    kv.st = st.id;
    kv.vbase = 220;
    kv.vmax = 242;
    kv.vmin = 198;
    Put(model, kv);
    CB cb(Name("B", i));
    cb.kv = kv.id;
    cb.nd = Name("N", 2 * i - 1);
    cb.znd = Name("N", 2 * i);
    cb.flags = 1;
    Put(model, cb);
  }
  UN un(Name("U", 1));
  un.kv = Name("K", 1);
  un.nd = Name("N", 1);
  un.pmax = 300;
  Put(model, un);
  LD ld(Name("D", 1));
  ld.kv = Name("K", 2);
  ld.nd = Name("N", 4);
  Put(model, ld);
  LN ln(Name("L", 1));
  ln.dv = dv.id;
  ln.st = Name("S", 1);
  ln.zst = Name("S", 2);
  ln.kv = Name("K", 1);
  ln.zkv = Name("K", 2);
  ln.nd = Name("N", 2);
  ln.znd = Name("N", 3);
  Put(model, ln);
}

void FillAnyModel(ByteSource& bytes, DTSDB& model) { AnyModel(bytes, model).Fill(); }

void DamageModel(ByteSource& bytes, DTSDB& model, int most) {
  for (int left = bytes.Below(most + 1); left > 0; --left) {
    int at = bytes.Below(46);
    ForEachTable(model, [&](auto& table) {
      if (at-- == 0) DamageTable(bytes, table);
    });
  }
}

}  // namespace dtsdb::fuzz

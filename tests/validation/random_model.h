/// \file
/// Random models for properties of the validation, sound ones and damaged ones.
#pragma once

#include <rapidcheck.h>

#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/model_builder.h"

namespace dtsdb::test {

inline std::string Name(const std::string& prefix, int number) { return prefix + std::to_string(number); }

/// A sound model of `stations` stations, its devices given to random nodes.
inline ModelBuilder RandomModel(int stations) {
  ModelBuilder m;
  const auto below = [](int n) { return *rc::gen::inRange(0, n); };
  constexpr int kNodes = 5;
  const auto node = [&](int level, int n) { return Name(Name("N", level) + "-", n); };
  // Numbers are counted down, so that the order of mention is not the order of names.
  for (int s = stations - 1; s >= 0; --s) {
    m.Station(Name("S", s).c_str()).Kv(Name("K", 2 * s).c_str(), 220).Kv(Name("K", 2 * s + 1).c_str(), 220);
    m.Winding(Name("X", s).c_str(), Name("S", s).c_str(), Name("K", 2 * s).c_str(), Name("K", 2 * s + 1).c_str(),
              node(2 * s, below(kNodes)).c_str(), node(2 * s + 1, below(kNodes)).c_str());
  }
  for (int i = 0; i < 4 * stations; ++i) {
    const int level = below(2 * stations);
    const std::string kv = Name("K", level);
    const int from = below(kNodes);
    const int to = (from + 1 + below(kNodes - 1)) % kNodes;
    m.Breaker(Name("B", i).c_str(), kv.c_str(), node(level, from).c_str(), node(level, to).c_str());
    if (below(4) == 0) m.Zbr(Name("Z", i).c_str(), Name("B", i).c_str());
    m.Unit(Name("U", i).c_str(), kv.c_str(), node(level, below(kNodes)).c_str());
    m.Load(Name("L", i).c_str(), kv.c_str(), node(level, below(kNodes)).c_str());
    m.Cap(Name("C", i).c_str(), kv.c_str(), node(level, below(kNodes)).c_str());
    m.Bus(Name("P", i).c_str(), kv.c_str(), node(level, below(kNodes)).c_str());
    const int far = below(2 * stations);
    if (far == level) continue;
    const std::string st = Name("S", level / 2);
    const std::string zst = Name("S", far / 2);
    const std::string zkv = Name("K", far);
    m.Line(Name("A", i).c_str(), "DV", st.c_str(), zst.c_str(), kv.c_str(), zkv.c_str(), node(level, from).c_str(),
           node(far, to).c_str());
    m.DcLine(Name("D", i).c_str(), "DV", st.c_str(), zst.c_str(), kv.c_str(), zkv.c_str(), node(level, from).c_str(),
             node(far, to).c_str());
  }
  return m;
}

/// Replaces some texts of some records by texts from elsewhere, and some numbers by any. Fields before `first` stay.
template <class T>
void Damage(tTable<T>& table, int first = 0) {
  if (table.GetCount() == 0) return;
  std::vector<T> rows;
  for (int i = 0; i < table.GetCount(); ++i) rows.push_back(table[i]);
  const auto texts = rc::gen::element<std::string>("", "S0", "S1", "K0", "K1", "K2", "N0-1", "N1-2", "B0", "DV", "L0",
                                                   "\xFF\x81", "nowhere");
  for (int hit = *rc::gen::inRange(0, 3); hit > 0; --hit) {
    T& row = rows[*rc::gen::inRange<std::size_t>(0, rows.size())];
    const int at = *rc::gen::inRange(first, static_cast<int>(T::Fields().size()));
    int number = 0;
    ForEachField(row, [&]<class Value>(const FieldInfo&, Value& value) {
      if (number++ != at) return;
      if constexpr (std::is_same_v<Value, QString>) {
        value = IdFromBytes((*texts).c_str());
      } else {
        value = static_cast<Value>(*rc::gen::element(-2, -1, 0, 1, 7, 300, 1 << 30));
      }
    });
  }
  table.SetData(rows.data(), static_cast<int>(rows.size()), false);
}

}  // namespace dtsdb::test

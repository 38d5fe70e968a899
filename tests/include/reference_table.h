/// \file
/// What a table does, in its plainest form: every number is written at once and storage is what it shows.
#pragma once

#include <utility>
#include <vector>

#include "tests/include/table_probe.h"

namespace dtsdb::test {

/// The measuring stick for tTable: the same operations and results, without a thought for speed.
class ReferenceTable {
 public:
  int GetCount() const { return s.count; }
  int GetSize() const { return s.size; }
  const Rec& At(int nLg) const { return data[s.lgToPh[nLg]]; }
  int LgToPh(int nLg) const { return s.lgToPh[nLg]; }
  int PhToLg(int nPh) const { return s.phToLg[nPh]; }
  Rec& GetPh(int nPh) { return data[nPh]; }

  TableState State() const {
    TableState state = s;
    state.contents = KeysAndTags(data.data(), s.size);
    return state;
  }

  int Find(const Rec& rec) const {
    int low = 0;
    int high = s.count - 1;
    int n = s.count;
    while (low <= high) {
      const int half = n / 2;
      if (half == 0) {
        if (n == 0) return -1;
        return rec == At(low) ? s.lgToPh[low] : -1;
      }
      const int mid = n % 2 == 1 ? low + half : low + half - 1;
      if (rec == At(mid)) return s.lgToPh[mid];
      if (rec < At(mid)) {
        high = mid - 1;
        n = n % 2 == 1 ? half : half - 1;
      } else {
        low = mid + 1;
        n = half;
      }
    }
    return -1;
  }

  int Locate(const Rec& rec, int* before, int* behind) const {
    *before = -1;
    *behind = -1;
    if (s.count == 0) return -1;
    if (data[s.tail] < rec) {
      *before = s.tail;
      return -1;
    }
    if (rec < data[s.head]) {
      *behind = s.head;
      return -1;
    }
    int left = -1;
    int right = -1;
    int low = 0;
    int high = s.count - 1;
    int n = s.count;
    const auto found = [&](int nPh) {
      *before = s.prev[nPh];
      *behind = s.next[nPh];
      return nPh;
    };
    while (low <= high) {
      const int half = n / 2;
      if (half == 0) {
        if (n == 0) break;
        if (rec == At(low)) return found(s.lgToPh[low]);
        if (rec < At(low)) {
          right = low;
        } else {
          left = low;
        }
        break;
      }
      const int mid = n % 2 == 1 ? low + half : low + half - 1;
      if (rec == At(mid)) return found(s.lgToPh[mid]);
      if (rec < At(mid)) {
        right = mid;
        high = mid - 1;
        n = n % 2 == 1 ? half : half - 1;
      } else {
        left = mid;
        low = mid + 1;
        n = half;
      }
    }
    if (left != -1) *before = s.lgToPh[left];
    if (right != -1) *behind = s.lgToPh[right];
    return -1;
  }

  int Add(const Rec& rec) {
    if (s.first == -1) SetSize(s.size + s.growBy);
    int before = -1;
    int behind = -1;
    if (Locate(rec, &before, &behind) >= 0) return -1;
    const int nPh = Link(before, behind);
    if (nPh == -1) return -1;
    data[nPh] = rec;
    s.ordered = 0;
    return nPh;
  }

  /// A slot that shrinking left numbered is free all the same.
  int Remove(int nPh) {
    if (s.phToLg[nPh] == -1 || !IsInUsedChain(nPh)) return -1;
    const int nLg = s.phToLg[nPh];
    Unlink(nPh);
    s.ordered = 0;
    return nLg;
  }

  void SetGrowBy(int n) { s.growBy = n < 0 ? 10 : n; }

  void SetSize(int n) {
    if (n == 0) {
      Free();
    } else if (s.size == 0) {
      Allocate(n);
    } else if (n > s.size) {
      Grow(n);
    } else if (n < s.size) {
      Shrink(n);
    }
  }

  void SetData(Rec* p, int n, bool sorted) {
    if (s.count != 0) Clear();
    if (s.size < n) SetSize(n);
    if (!sorted) QuickSort(p, 0, n - 1);
    for (int i = 0; i < s.size; ++i) {
      s.next[i] = i + 1;
      s.prev[i] = i - 1;
      s.lgToPh[i] = s.phToLg[i] = i < n ? i : -1;
      if (i < n) data[i] = p[i];
    }
    s.count = n;
    s.head = 0;
    s.tail = n - 1;
    s.next[s.tail] = -1;
    s.prev[s.head] = -1;
    s.first = s.last = -1;
    if (n != s.size) {
      s.first = n;
      s.last = s.size - 1;
      s.next[s.last] = -1;
      s.prev[s.first] = -1;
    }
    s.ordered = 1;
  }

  static void QuickSort(Rec* p, int low, int high) {
    const Rec pivot = p[(low + high) / 2];
    int i = low;
    int j = high;
    do {
      while (p[i] < pivot) ++i;
      while (pivot < p[j]) --j;
      if (i <= j) {
        const Rec swap = p[i];
        p[i] = p[j];
        p[j] = swap;
        ++i;
        --j;
      }
    } while (i <= j);
    if (low < j) QuickSort(p, low, j);
    if (i < high) QuickSort(p, i, high);
  }

  void Clear() {
    if (s.count == 0) return;
    s.lgToPh.assign(s.size, -1);
    s.phToLg.assign(s.size, -1);
    ChainFrom(0);
    s.count = 0;
    s.head = s.tail = -1;
    s.first = 0;
    s.last = s.size - 1;
    s.prev[s.first] = -1;
    s.next[s.last] = -1;
    s.ordered = 1;
  }

  void Compact() {
    if (s.count != 0) {
      std::vector<Rec> records;
      for (int i = s.head; i != -1; i = s.next[i]) records.push_back(data[i]);
      Clear();
      SetData(records.data(), static_cast<int>(records.size()), false);
    }
    s.ordered = 1;
  }

 private:
  bool IsInUsedChain(int nPh) const {
    for (int i = s.head; i != -1; i = s.next[i]) {
      if (i == nPh) return true;
    }
    return false;
  }

  void ChainFrom(int from) {
    for (int i = from; i < s.size; ++i) {
      s.next[i] = i + 1;
      s.prev[i] = i - 1;
    }
  }

  void NumberFrom(int nPh, int nLg) {
    for (; nPh != -1; nPh = s.next[nPh], ++nLg) {
      s.lgToPh[nLg] = nPh;
      s.phToLg[nPh] = nLg;
    }
  }

  int Link(int before, int behind) {
    if (s.first == -1) return -1;
    const int p = s.first;
    s.first = s.next[p];
    if (s.first != -1) {
      s.prev[s.first] = -1;
    } else {
      s.last = -1;
    }
    if (before == -1 && behind == -1) {
      s.head = s.tail = p;
      s.lgToPh[s.count] = p;
      s.phToLg[p] = s.count;
      s.next[p] = s.prev[p] = -1;
    } else if (before == -1) {
      s.head = p;
      s.next[p] = behind;
      s.prev[behind] = p;
      s.prev[p] = -1;
      NumberFrom(s.head, 0);
    } else if (behind == -1) {
      s.next[s.tail] = p;
      s.prev[p] = s.tail;
      s.tail = p;
      s.lgToPh[s.count] = p;
      s.phToLg[p] = s.count;
      s.next[p] = -1;
    } else {
      s.next[p] = s.next[before];
      s.prev[p] = s.prev[behind];
      s.next[before] = p;
      s.prev[behind] = p;
      NumberFrom(s.next[before], s.phToLg[before] + 1);
    }
    ++s.count;
    return p;
  }

  void LowerBehind(int nPh) {
    for (int i = s.next[nPh]; i != -1; i = s.next[i]) {
      --s.phToLg[i];
      s.lgToPh[s.phToLg[i]] = i;
    }
  }

  void Unlink(int nPh) {
    if (nPh == s.head && nPh == s.tail) {
      s.phToLg[nPh] = -1;
      s.lgToPh[0] = -1;
      s.head = s.tail = -1;
    } else if (nPh == s.head) {
      s.phToLg[nPh] = -1;
      LowerBehind(nPh);
      s.lgToPh[s.count - 1] = -1;
      s.head = s.next[nPh];
      s.prev[s.head] = -1;
    } else if (nPh == s.tail) {
      s.phToLg[nPh] = -1;
      s.lgToPh[s.count - 1] = -1;
      s.tail = s.prev[nPh];
      s.next[s.tail] = -1;
    } else {
      s.phToLg[nPh] = -1;
      LowerBehind(nPh);
      s.lgToPh[s.count - 1] = -1;
      s.next[s.prev[nPh]] = s.next[nPh];
      s.prev[s.next[nPh]] = s.prev[nPh];
    }
    if (s.first == -1) {
      s.first = s.last = nPh;
      s.next[nPh] = s.prev[nPh] = -1;
    } else {
      s.next[nPh] = s.first;
      s.prev[s.first] = nPh;
      s.first = nPh;
      s.prev[nPh] = -1;
    }
    --s.count;
  }

  void Free() {
    const int growBy = s.growBy;
    s = TableState();
    s.growBy = growBy;
    data.clear();
  }

  void Allocate(int n) {
    Free();
    s.size = n;
    s.lgToPh.assign(n, -1);
    s.phToLg.assign(n, -1);
    s.next.resize(n);
    s.prev.resize(n);
    ChainFrom(0);
    data.assign(n, Rec());
    s.first = 0;
    s.last = n - 1;
    s.prev[s.first] = -1;
    s.next[s.last] = -1;
  }

  void Grow(int n) {
    std::vector<Rec> grown(n);
    for (int i = s.head; i != -1; i = s.next[i]) grown[i] = data[i];
    data = std::move(grown);
    const int old = s.size;
    s.size = n;
    s.lgToPh.resize(n, -1);
    s.phToLg.resize(n, -1);
    s.next.resize(n);
    s.prev.resize(n);
    ChainFrom(old);
    if (s.first != -1) {
      s.next[s.last] = old;
    } else {
      s.first = old;
    }
    s.last = n - 1;
    s.prev[s.first] = -1;
    s.next[s.last] = -1;
  }

  void Shrink(int n) {
    std::vector<Rec> kept;
    for (int i = s.head; i != -1 && static_cast<int>(kept.size()) < n; i = s.next[i]) kept.push_back(data[i]);
    Allocate(n);
    for (std::size_t i = 0; i < kept.size(); ++i) data[i] = kept[i];
    for (int i = 0; i < n; ++i) s.lgToPh[i] = s.phToLg[i] = i;
  }

  TableState s;  // its slots are in `data`
  std::vector<Rec> data;
};

}  // namespace dtsdb::test

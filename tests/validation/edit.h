/// \file
/// Editing a validated model, for the tests of this folder.
#pragma once

#include "tests/support/messages.h"
#include "tests/validation/run.h"
#include "validation/editing.h"

namespace dtsdb::test {

/// Number of record classes that can be edited.
template <class... Record>
constexpr int CountOf(TypeList<Record...>) {
  return sizeof...(Record);
}
inline constexpr int kEditedCount = CountOf(EditedRecords());

/// Calls `visit` with an empty record of the class at `place` among them.
template <class Visit>
void VisitEdited(int place, Visit visit) {
  ForEachType(EditedRecords(), [&]<class T> {
    if (place-- == 0) visit(T());
  });
}

/// A model, validated, with the object that edits it, in a directory of its own.
class Editing {
 public:
  explicit Editing(ModelBuilder& m) : model(m), nmd(&m.Db()) { nmd.DetectAll(); }

  /// Why the record can't be added; empty when it can.
  template <class Record>
  std::string Why(const Record& record) {
    return nmd.IsValid(record) ? "" : Reason("");
  }

  bool IsGood() { return model.Db().m_globalTable->GetPh(0).valid == 1; }
  std::string LastError() const { return Utf8(nmd.GetLastError()); }

  // The reason of a failure, empty for success.
  template <class Record>
  std::string Add(Record& record) {
    const std::string before = LastError();
    return AddRecord(nmd, record) ? "" : Reason(before);
  }
  template <class Record>
  std::string Remove(const Record& record) {
    const std::string before = LastError();
    return RemoveRecord(nmd, record) ? "" : Reason(before);
  }
  template <class Record>
  std::string Remove(const char* id) {
    return Remove(Record(Id(id)));
  }

  /// What a fresh run finds: empty when the model is good.
  Texts Revalidate() {
    nmd.DetectAll();
    Texts errors;
    for (const Finding& finding : nmd.Findings()) {
      if (finding.severity == Severity::kError) errors.push_back(Utf8(finding.text));
    }
    return errors;
  }

 private:
  /// The last error, which must be that of its code; some removals fail without one and leave the one `before`.
  std::string Reason(const std::string& before) const {
    const MessageInfo* const message = nmd.LastErrorCode() != nullptr ? FindMessage(nmd.LastErrorCode()) : nullptr;
    EXPECT_NE(message, nullptr);
    if (message != nullptr && LastError() != message->chinese) {
      EXPECT_EQ(LastError(), before);
    }
    return LastError().empty() ? "no reason" : LastError();
  }

  TemporaryDirectory m_directory;

 public:
  ModelBuilder& model;
  NMD nmd;
};

// New records, as a careful caller makes them.

template <class Record>
Record New(const char* id) {
  Record record(Id(id));
  ClearLinks(record);
  return record;
}

inline DV NewDistrict(const char* id, const char* co) {
  DV dv = New<DV>(id);
  dv.co = Id(co);
  return dv;
}

inline ST NewStation(const char* id, const char* dv, u8 type = 8) {
  ST st = New<ST>(id);
  st.dv = Id(dv);
  st.type = type;
  return st;
}

inline KV NewLevel(const char* id, const char* st, f32 vbase = 220) {
  KV kv = New<KV>(id);
  kv.st = Id(st);
  kv.vbase = vbase;
  return kv;
}

template <class Shunt>
Shunt NewShunt(const char* id, const char* kv, const char* nd) {
  Shunt shunt = New<Shunt>(id);
  shunt.kv = Id(kv);
  shunt.nd = Id(nd);
  return shunt;
}

inline CB NewBreaker(const char* id, const char* kv, const char* nd, const char* znd) {
  CB cb = NewShunt<CB>(id, kv, nd);
  cb.znd = Id(znd);
  cb.flags = 1;
  return cb;
}

inline ZBR NewZbr(const char* id, const char* cb) {
  ZBR zbr = New<ZBR>(id);
  zbr.cb = Id(cb);
  return zbr;
}

inline XF NewWinding(const char* id, const char* st, const char* kv, const char* zkv, const char* nd, const char* znd) {
  XF xf = NewShunt<XF>(id, kv, nd);
  xf.type = 1;
  xf.st = Id(st);
  xf.zkv = Id(zkv);
  xf.znd = Id(znd);
  return xf;
}

template <class Line>
Line NewLine(const char* id, const char* dv, const char* st, const char* zst, const char* kv, const char* zkv,
             const char* nd, const char* znd) {
  Line line = NewShunt<Line>(id, kv, nd);
  line.dv = Id(dv);
  line.st = Id(st);
  line.zst = Id(zst);
  line.zkv = Id(zkv);
  line.znd = Id(znd);
  return line;
}

}  // namespace dtsdb::test

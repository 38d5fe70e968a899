#include "fuzz/public_calls.h"

#include "fuzz/any_model.h"
#include "model/text.h"
#include "topology/component_types.h"
#include "validation/editing.h"

namespace dtsdb::fuzz {

Workplace::Workplace(ByteSource& source) : bytes(source) {
  database.setErrorHandler([](int, char const*, int, void*) {});
  database.setFileSizeLimit(std::size_t{64} << 20);
  Require(database.open(folder.File().c_str(), folder.File().c_str()), "the store opens");
  for (int i = 0; i < kCopies; ++i) {
    DTSDB& model = models[static_cast<std::size_t>(i)];
    FillAnyModel(bytes, model);
    DamageModel(bytes, model, bytes.Chance(50) ? 4 : 0);
    tps.emplace_back(&model);
    nmds.emplace_back(&model, [](LogKind, std::string_view) {});
    flows.emplace_back(&database);
  }
}

Workplace::~Workplace() { database.close(); }

int Workplace::AnyNumber() {
  static constexpr int kOthers[] = {-1, -2, 1 << 30, -(1 << 30)};
  return bytes.Chance(20) ? kOthers[bytes.Below(4)] : bytes.Below(60);
}

QString Workplace::OtherId() { return AnyIdentity(bytes); }

SwitchEvent Workplace::AnyEvent() {
  SwitchEvent event{bytes.Below(20) - 1, bytes.Chance(50), ""};
  DTSDB& model = AnyModel();
  const bool isKnown = WithComponentType(event.type, [&]<class Type>(const Type&) {
    event.id = IdToBytes(IdOf<typename Type::Record>(model)).toStdString();
  });
  if (!isKnown) event.id = IdToBytes(OtherId()).toStdString();
  return event;
}

namespace {

template <class Record>
Record AnyRecord(Workplace& w) {
  DTSDB& model = w.AnyModel();
  tTable<Record>& table = TableOf<Record>(model);
  Record record;
  if (table.GetCount() > 0) record = table[w.bytes.Below(table.GetCount())];
  ClearLinks(record);
  record.id = AnyIdentity(w.bytes);
  return record;
}

void IsValid(Workplace& w) {
  int at = w.bytes.Below(13);
  ForEachType(EditedRecords(), [&]<class Record> {
    if (at-- == 0) w.AnyNmd().IsValid(AnyRecord<Record>(w));
  });
}

template <class Record>
void AddOne(Workplace& w) {
  Record record = AnyRecord<Record>(w);
  AddRecord(w.AnyNmd(), record);
}

template <class Record>
void RemoveOne(Workplace& w) {
  const QString id = w.IdOf<Record>(w.AnyModel());
  RemoveRecord(w.AnyNmd(), Record(id));
}

void Levels(Workplace& w, bool (TP::*levels)(int*, int) const) {
  std::vector<int> out(static_cast<std::size_t>(w.bytes.Below(40)));
  (w.AnyTp().*levels)(out.data(), static_cast<int>(out.size()));
}

void Damage(Workplace& w) { DamageModel(w.bytes, w.AnyModel(), 3); }

constexpr PublicCall kCoreCalls[] = {
    {"TP::TP", [](Workplace& w) { w.AnyTp() = TP(&w.AnyModel()); }},
    {"TP::operator=", [](Workplace& w) { w.AnyTp() = w.AnyTp(); }},
    {"TP::tpAllnew", [](Workplace& w) { w.AnyTp().tpAllnew(); }},
    {"TP::tpChange", [](Workplace& w) { w.AnyTp().tpChange(); }},
    {"TP::tpSetCompStatus",
     [](Workplace& w) {
       const SwitchEvent event = w.AnyEvent();
       w.AnyTp().tpSetCompStatus(event.id.c_str(), event.type, event.on);
     }},
    {"TP::tpRefreshCB", [](Workplace& w) { w.AnyTp().tpRefreshCB(); }},
    {"TP::tpReadStatus", [](Workplace& w) { w.AnyTp().tpReadStatus(&w.database); }},
    {"TP::tpReadTptrace", [](Workplace& w) { w.AnyTp().tpReadTptrace(&w.database); }},
    {"TP::tpSetRefUN", [](Workplace& w) { w.AnyTp().tpSetRefUN(); }},
    {"TP::tpReadFastdb", [](Workplace& w) { w.AnyTp().tpReadFastdb(&w.database); }},
    {"TP::tpWriteFastdb", [](Workplace& w) { w.AnyTp().tpWriteFastdb(&w.database); }},
    {"TP::tpWriteChangedData", [](Workplace& w) { w.AnyTp().tpWriteChangedData(&w.database); }},
    {"TP::getAllKVCount", [](Workplace& w) { w.AnyTp().getAllKVCount(); }},
    {"TP::getChangedKVCount", [](Workplace& w) { w.AnyTp().getChangedKVCount(); }},
    {"TP::getAllKVs", [](Workplace& w) { Levels(w, &TP::getAllKVs); }},
    {"TP::getChangedKVs", [](Workplace& w) { Levels(w, &TP::getChangedKVs); }},
    {"TP::tpBsChanged", [](Workplace& w) { w.AnyTp().tpBsChanged(); }},
    {"TP::tpGetStartNo", [](Workplace& w) { w.AnyTp().tpGetStartNo(); }},
    {"TP::tpGetEndNo", [](Workplace& w) { w.AnyTp().tpGetEndNo(); }},

    {"NMD::NMD", [](Workplace& w) { w.AnyNmd() = NMD(&w.AnyModel(), [](LogKind, std::string_view) {}); }},
    {"NMD::operator=", [](Workplace& w) { w.AnyNmd() = w.AnyNmd(); }},
    {"NMD::DetectAll", [](Workplace& w) { w.AnyNmd().DetectAll(); }},
    {"NMD::GetLastError", [](Workplace& w) { w.AnyNmd().GetLastError(); }},
    {"NMD::LastErrorCode", [](Workplace& w) { w.AnyNmd().LastErrorCode(); }},
    {"NMD::Findings", [](Workplace& w) { w.AnyNmd().Findings(); }},
    {"NMD::IsValid", IsValid},
    {"NMD::AddCO", AddOne<CO>},
    {"NMD::AddDV", AddOne<DV>},
    {"NMD::AddST", AddOne<ST>},
    {"NMD::AddKV", AddOne<KV>},
    {"NMD::AddBUS", AddOne<BUS>},
    {"NMD::AddLD", AddOne<LD>},
    {"NMD::AddUN", AddOne<UN>},
    {"NMD::AddCP", AddOne<CP>},
    {"NMD::AddCB", AddOne<CB>},
    {"NMD::AddXF", AddOne<XF>},
    {"NMD::AddZBR", AddOne<ZBR>},
    {"NMD::AddLN", AddOne<LN>},
    {"NMD::AddDLN", AddOne<DLN>},
    {"NMD::RemoveCO", RemoveOne<CO>},
    {"NMD::RemoveDV", RemoveOne<DV>},
    {"NMD::RemoveST", RemoveOne<ST>},
    {"NMD::RemoveKV", RemoveOne<KV>},
    {"NMD::RemoveBUS", RemoveOne<BUS>},
    {"NMD::RemoveLD", RemoveOne<LD>},
    {"NMD::RemoveUN", RemoveOne<UN>},
    {"NMD::RemoveCP", RemoveOne<CP>},
    {"NMD::RemoveCB", RemoveOne<CB>},
    {"NMD::RemoveXF", RemoveOne<XF>},
    {"NMD::RemoveZBR", RemoveOne<ZBR>},
    {"NMD::RemoveLN", RemoveOne<LN>},
    {"NMD::RemoveDLN", RemoveOne<DLN>},
    {"NMD::ReadFastdb", [](Workplace& w) { w.AnyNmd().ReadFastdb(&w.database); }},
    {"NMD::WriteFastdb", [](Workplace& w) { w.AnyNmd().WriteFastdb(&w.database); }},

    {"cbFlow::cbFlow", [](Workplace& w) { w.AnyFlow() = cbFlow(&w.database, static_cast<float>(w.AnyNumber())); }},
    {"cbFlow::operator=", [](Workplace& w) { w.AnyFlow() = w.AnyFlow(); }},
    {"cbFlow::setDelta", [](Workplace& w) { w.AnyFlow().setDelta(static_cast<float>(w.AnyNumber())); }},
    {"cbFlow::getDelta", [](Workplace& w) { w.AnyFlow().getDelta(); }},
    {"cbFlow::loadData", [](Workplace& w) { w.AnyFlow().loadData(); }},
    {"cbFlow::calculate", [](Workplace& w) { w.AnyFlow().calculate(); }},
    {"cbFlow::storeData", [](Workplace& w) { w.AnyFlow().storeData(); }},
    {"cbFlow::Breakers", [](Workplace& w) { w.AnyFlow().Breakers(); }},
    {"cbFlow::Nodes", [](Workplace& w) { w.AnyFlow().Nodes(); }},
    {"cbFlow::SetCount", [](Workplace& w) { w.AnyFlow().SetCount(); }},
    {"cbFlow::SetNodes", [](Workplace& w) { w.AnyFlow().SetNodes(w.AnyNumber()); }},
    {"cbFlow::SetBreakers", [](Workplace& w) { w.AnyFlow().SetBreakers(w.AnyNumber()); }},
    {"cbFlow::SetBalance", [](Workplace& w) { w.AnyFlow().SetBalance(w.AnyNumber()); }},
    {"cbFlow::IsBalanced", [](Workplace& w) { w.AnyFlow().IsBalanced(w.AnyNumber()); }},

    {"(damage by another program)", Damage},
};

constexpr LeftOut kLeftOut[] = {
    {"analysis::Switching, on a model that others edit", "the caller answers for the records under a session"},
    {"analysis::Moment::WayBack", "the caller answers for a model with the records of the moment; sessions call it"},
    {"tTable, a reference after the table has changed", "the caller answers for its life"},
    {"tTable::tTable", "every call works on tables that were made"},
    {"dbDatabase::dbDatabase", "each workplace has one of its own"},
    {"dbDatabase::setFileSizeLimit", "each workplace sets it before it opens the database"},
    {"dbDatabase::setErrorHandler", "likewise"},
    {"dbDatabase::handleError", "the database calls it, with what each workplace has set"},
    {"dbDatabase::select", "cursors call it"},
    {"dbDatabase::insertRecord",
     "insert calls it, with the table of the record's class; the caller answers for the class"},
    {"dbDatabase::insertRecordAs", "the caller answers for a number that the table doesn't have"},
    {"dbDatabase::update", "the caller answers for a record of the table's class"},
};

}  // namespace

std::span<const PublicCall> CoreCalls() { return kCoreCalls; }

std::span<const LeftOut> CallsLeftOut() { return kLeftOut; }

std::vector<PublicCall> AllPublicCalls() {
  std::vector<PublicCall> calls;
  for (const auto part : {CoreCalls(), TableCalls(), ExchangeCalls(), AnalysisCalls()}) {
    calls.insert(calls.end(), part.begin(), part.end());
  }
  return calls;
}

}  // namespace dtsdb::fuzz

#include <QBuffer>
#include <string>

#include "fuzz/any_model.h"
#include "fuzz/public_calls.h"
#include "model/exchange.h"
#include "model/qarchive.h"
#include "model/text.h"

namespace dtsdb::fuzz {

namespace {

QString AnyFile(Workplace& w) {
  const char* const name = w.bytes.Chance(90) ? "model.obj" : "missing/model.obj";
  return QString::fromStdString(w.folder.File(name));
}

void SerializeModel(Workplace& w) {
  QBuffer buffer;
  buffer.open(QIODevice::ReadWrite);
  QArchive store(&buffer, false);
  w.AnyModel().Serialize(store);
  buffer.seek(w.bytes.Chance(20) ? w.bytes.Below(64) : 0);
  QArchive load(&buffer, true);
  w.AnyModel().Serialize(load);
}

void Reopen(Workplace& w) {
  w.database.close();
  w.database.open(w.folder.File().c_str(), w.folder.File().c_str());
}

/// A walk of a cursor over the units, which it moves, changes and removes.
template <class Row>
void Walk(Workplace& w) {
  static constexpr char const* kQueries[] = {"", "order by id desc", "id <> 'E1'", "nonsense <", "id like 'E%'"};
  dbCursor<Row> cursor(&w.database, w.bytes.Chance(50) ? dbCursorForUpdate : dbCursorViewOnly);
  cursor.select(kQueries[w.bytes.Below(5)]);
  for (int left = w.bytes.Below(20); left > 0; --left) {
    switch (w.bytes.Below(16)) {
      case 0:
        cursor.next();
        break;
      case 1:
        cursor.prev();
        break;
      case 2:
        cursor.first();
        break;
      case 3:
        cursor.last();
        break;
      case 4:
        cursor.nextAvailable();
        break;
      case 5:
        cursor.skip(w.bytes.Below(9) - 4);
        break;
      case 6:
        cursor.update();
        break;
      case 7:
        cursor.remove();
        break;
      case 8:
        cursor.at(cursor.currentId());
        break;
      case 9:
        cursor.removeAllSelected();
        break;
      case 10:
        cursor.reset();
        break;
      case 11:
        cursor.select();
        break;
      case 12:
        cursor.isFirst();
        break;
      case 13:
        cursor.isLast();
        break;
      case 14:
        cursor.getNumberOfRecords();
        break;
      default:
        cursor.get();
    }
  }
}

void Insert(Workplace& w) {
  const std::string id = IdToBytes(AnyIdentity(w.bytes)).toStdString();
  un row{};
  row.id = id.c_str();
  w.database.insert(row);
}

#define DTSDB_TABLE_CALLS(name)                                                                               \
  {"DTSDB::Read" #name "FromFastdb", [](Workplace& w) { w.AnyModel().Read##name##FromFastdb(&w.database); }}, \
      {"DTSDB::Write" #name "ToFastdb", [](Workplace& w) { w.AnyModel().Write##name##ToFastdb(&w.database); }},

// clang-format off
constexpr PublicCall kExchangeCalls[] = {
    DTSDB_TABLE_CALLS(ANALOG)
    DTSDB_TABLE_CALLS(BS)
    DTSDB_TABLE_CALLS(BSL)
    DTSDB_TABLE_CALLS(BUS)
    DTSDB_TABLE_CALLS(CB)
    DTSDB_TABLE_CALLS(CB2)
    DTSDB_TABLE_CALLS(CHND)
    DTSDB_TABLE_CALLS(CO)
    DTSDB_TABLE_CALLS(CP)
    DTSDB_TABLE_CALLS(DLN)
    DTSDB_TABLE_CALLS(DLN2)
    DTSDB_TABLE_CALLS(DV)
    DTSDB_TABLE_CALLS(GLOBAL)
    DTSDB_TABLE_CALLS(ISLAND)
    DTSDB_TABLE_CALLS(KV)
    DTSDB_TABLE_CALLS(LD)
    DTSDB_TABLE_CALLS(LN)
    DTSDB_TABLE_CALLS(LN2)
    DTSDB_TABLE_CALLS(ND)
    DTSDB_TABLE_CALLS(R_CO_DV)
    DTSDB_TABLE_CALLS(R_DV_DLN)
    DTSDB_TABLE_CALLS(R_DV_LN)
    DTSDB_TABLE_CALLS(R_DV_ST)
    DTSDB_TABLE_CALLS(R_KV_BUS)
    DTSDB_TABLE_CALLS(R_KV_CB)
    DTSDB_TABLE_CALLS(R_KV_CP)
    DTSDB_TABLE_CALLS(R_KV_LD)
    DTSDB_TABLE_CALLS(R_KV_ND)
    DTSDB_TABLE_CALLS(R_KV_UN)
    DTSDB_TABLE_CALLS(R_KV_ZBR)
    DTSDB_TABLE_CALLS(R_ND_CB2)
    DTSDB_TABLE_CALLS(R_ND_DLN2)
    DTSDB_TABLE_CALLS(R_ND_LN2)
    DTSDB_TABLE_CALLS(R_ND_XF2)
    DTSDB_TABLE_CALLS(R_ND_ZBR2)
    DTSDB_TABLE_CALLS(R_ST_KV)
    DTSDB_TABLE_CALLS(R_ST_XF)
    DTSDB_TABLE_CALLS(ST)
    DTSDB_TABLE_CALLS(STATUS)
    DTSDB_TABLE_CALLS(TPL)
    DTSDB_TABLE_CALLS(TPTRACE)
    DTSDB_TABLE_CALLS(UN)
    DTSDB_TABLE_CALLS(XF)
    DTSDB_TABLE_CALLS(XF2)
    DTSDB_TABLE_CALLS(ZBR)
    DTSDB_TABLE_CALLS(ZBR2)
    {"DTSDB::DTSDB", [](Workplace& w) { const DTSDB copy(w.AnyModel()); }},
    {"DTSDB::operator=", [](Workplace& w) { w.AnyModel() = w.AnyModel(); }},
    {"DTSDB::ReadObject", [](Workplace& w) { w.AnyModel().ReadObject(AnyFile(w)); }},
    {"DTSDB::WriteObject", [](Workplace& w) { w.AnyModel().WriteObject(AnyFile(w)); }},
    {"DTSDB::Serialize", SerializeModel},
    {"DTSDB::ReadFastdb", [](Workplace& w) { w.AnyModel().ReadFastdb(&w.database); }},
    {"DTSDB::WriteFastdb", [](Workplace& w) { w.AnyModel().WriteFastdb(&w.database); }},

    {"dbDatabase::open", Reopen},
    {"dbDatabase::close", [](Workplace& w) { if (w.bytes.Chance(10)) w.database.close(); }},
    {"dbDatabase::isOpen", [](Workplace& w) { w.database.isOpen(); }},
    {"dbDatabase::attach", [](Workplace& w) { w.database.attach(); }},
    {"dbDatabase::detach", [](Workplace& w) { w.database.detach(w.bytes.Below(4)); w.database.attach(); }},
    {"dbDatabase::commit", [](Workplace& w) { w.database.commit(); }},
    {"dbDatabase::precommit", [](Workplace& w) { w.database.precommit(); }},
    {"dbDatabase::rollback", [](Workplace& w) { w.database.rollback(); }},
    {"dbDatabase::insert", Insert},
    {"dbDatabase::lookupTable", [](Workplace& w) { w.database.lookupTable(&un::dbDescriptor); }},
    {"dbDatabase::findTableByName", [](Workplace& w) { w.database.findTableByName("un"); }},
    {"dbDatabase::deleteTable", [](Workplace& w) { w.database.deleteTable(w.database.lookupTable(&un::dbDescriptor)); }},
    {"dbDatabase::changeNumber", [](Workplace& w) { w.database.changeNumber(w.database.lookupTable(&cb::dbDescriptor)); }},
    {"dbDatabase::lastCommitNumber", [](Workplace& w) { w.database.lastCommitNumber(); }},
    {"dbDatabase::openingNumber", [](Workplace& w) { w.database.openingNumber(); }},
    {"dbDatabase::copyNote", [](Workplace& w) { w.database.copyNote(); }},
    {"dbDatabase::setCopyNote", [](Workplace& w) { w.database.setCopyNote("note"); }},
    {"dbDatabase::moveCopyNote", [](Workplace& w) { w.database.moveCopyNote("", "note"); }},
    {"dbDatabase::backup", [](Workplace& w) { w.database.backup(w.folder.File("backup.fdb").c_str(), w.bytes.Chance(50)); }},
    {"dbAnyCursor", [](Workplace& w) { w.bytes.Chance(50) ? Walk<un>(w) : Walk<cb>(w); }},
};
// clang-format on
#undef DTSDB_TABLE_CALLS

}  // namespace

std::span<const PublicCall> ExchangeCalls() { return kExchangeCalls; }

}  // namespace dtsdb::fuzz

// A second program beside the tests of the exchange: exchange_helper COMMAND STORE [NUMBER]
//
//   make STORE STATIONS   stores a generated network as commits 1 and 2: validated, and with its topology
//   work STORE COMMITS    validates, stores, works out the topology, stores, and so on; prints "committed N" each time
//   hold STORE            writes the whole model with other marks, prints "holding" and waits, without a commit
//   read STORE            reads some of the model, prints "reading" and waits within the transaction
//   fill STORE KIBIBYTES  stores a generated network while no file may grow beyond that size
//
// Where it fails it reports that and ends; it never lives longer than two minutes.

#include <QDir>
#include <QFileInfo>
#include <cstdlib>
#include <string>

#include "generate/generator.h"
#include "model/exchange.h"
#include "model/record_bits.h"
#include "rtdb/backend.h"
#include "tests/model/exchange/commit_marks.h"
#include "tests/support/helper_program.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace {

using dtsdb::DTSDB;
using dtsdb::NMD;
using dtsdb::TP;
using dtsdb::test::PrintAndWait;
using dtsdb::test::PrintLine;

/// Opens or closes some of the breakers, others at each commit, so that the sections come out differently.
void SwitchBreakers(DTSDB& model, int number) {
  for (int i = number % 7; i < model.m_cbTable->GetCount(); i += 7) (*model.m_cbTable)[i].flags ^= dtsdb::CB_OPEN;
}

bool Validate(dbDatabase& db, int number) {
  DTSDB model;
  NMD validation(&model);
  validation.ReadFastdb(&db);
  SwitchBreakers(model, number);
  dtsdb::test::MarkForValidation(model, number);
  if (!validation.DetectAll() || (*model.m_globalTable)[0].valid != 1) return false;
  return validation.WriteFastdb(&db);
}

bool WorkOutTopology(dbDatabase& db, int number) {
  DTSDB model;
  TP topology(&model);
  topology.tpReadFastdb(&db);
  dtsdb::test::MarkForTopology(model, number);
  return topology.tpAllnew() == 1 && topology.tpWriteFastdb(&db) == 1;
}

int Work(dbDatabase& db, int from, int commits) {
  for (int number = from; number < from + commits; ++number) {
    const bool done = number % 2 == 1 ? Validate(db, number) : WorkOutTopology(db, number);
    if (!done) return PrintLine("failed", 1);
    PrintLine("committed " + std::to_string(number));
  }
  return 0;
}

int WorkOn(dbDatabase& db, int commits) {
  DTSDB model;
  model.ReadFastdb(&db);
  const int last = dtsdb::test::CommitOf(model);
  return last < 0 ? PrintLine("torn", 1) : Work(db, last + 1, commits);
}

void StoreNetwork(dbDatabase& db, int stations) {
  DTSDB model;
  dtsdb::tools::GenerateUtility(model, {stations, 1});
  model.WriteFastdb(&db);
}

int Hold(dbDatabase& db) {
  DTSDB model;
  model.ReadFastdb(&db);
  dtsdb::test::MarkForValidation(model, 9999);
  dtsdb::ForEachTable(model, [&db](auto& table) { dtsdb::WriteTable(&db, table); });
  return PrintAndWait("holding");
}

int Read(dbDatabase& db) {
  DTSDB model;
  model.ReadCBFromFastdb(&db);
  return PrintAndWait("reading");
}

int Fill(dbDatabase& db, int kibibytes) {
  dtsdb::test::LimitFileSize(static_cast<rlim_t>(kibibytes) * 1024);
  StoreNetwork(db, 20);
  return PrintLine("filled");
}

int Run(dbDatabase& db, const std::string& command, int number) {
  if (command == "work") return WorkOn(db, number);
  if (command == "hold") return Hold(db);
  if (command == "read") return Read(db);
  if (command == "fill") return Fill(db, number);
  if (command != "make") return 2;
  StoreNetwork(db, number);
  return Work(db, 1, 2);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  dtsdb::test::LimitLife();
  QDir::setCurrent(QFileInfo(QString::fromLocal8Bit(argv[2])).path());  // for the log of the validation
  dbDatabase db;
  if (!db.open(argv[2], argv[2])) return PrintLine("unreadable", 1);
  const int result = Run(db, argv[1], argc > 3 ? std::atoi(argv[3]) : 0);
  db.close();
  return result;
}

#include "tests/threads/whole_path.h"

#include <gtest/gtest.h>

#include <QString>
#include <fstream>
#include <iterator>
#include <sstream>

#include "breakerflow/cbflow.h"
#include "formats/model_io.h"
#include "formats/text_tables.h"
#include "generate/generator.h"
#include "model/dtsdb.h"
#include "model/text.h"
#include "rtdb/volma_rtdb.h"
#include "topology/component_types.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace dtsdb::test {
namespace {

/// An open database of this thread alone. Its errors fail the test.
class OwnDatabase {
 public:
  explicit OwnDatabase(const std::string& file) {
    m_database.setErrorHandler([](int error, char const* message, int, void*) {
      ADD_FAILURE() << "realtime database, error " << error << ": " << message;
    });
    EXPECT_TRUE(m_database.open(file.c_str(), file.c_str()));
  }
  OwnDatabase(const OwnDatabase&) = delete;
  OwnDatabase& operator=(const OwnDatabase&) = delete;
  ~OwnDatabase() { m_database.close(); }

  dbDatabase* Get() { return &m_database; }

 private:
  dbDatabase m_database;
};

/// Opens every seventh breaker and follows that up, twice.
void Switch(DTSDB& model, TP& topology) {
  for (const bool on : {false, true}) {
    const tTable<CB>& breakers = TableOf<CB>(std::as_const(model));
    for (int i = 0; i < breakers.GetCount(); i += 7) {
      topology.tpSetCompStatus(IdToBytes(breakers[i].id).constData(), kBreakerType, on);
    }
    topology.tpChange();
  }
}

/// The flows of a stored model, which are stored with it.
std::string FlowsOf(dbDatabase* database) {
  cbFlow flow(database);
  flow.loadData();
  flow.calculate();
  flow.storeData();
  std::ostringstream text;
  for (const cbBreaker& breaker : flow.Breakers())
    text << breaker.p << ' ' << breaker.q << ' ' << breaker.flags << '\n';
  return text.str();
}

std::string BytesOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

std::string WholePath(const std::string& folder, quint64 seed, const LogSink& log) {
  DTSDB model;
  {
    DTSDB made;
    tools::GenerateUtility(made, {.stations = 6, .seed = seed});
    tools::WriteTextTables(made, folder + "/tables");
  }
  tools::ReadTextTables(folder + "/tables", model);
  NMD validation(&model, log);
  EXPECT_TRUE(validation.DetectAll());
  TP topology(&model);
  EXPECT_EQ(topology.tpAllnew(), 1);
  topology.tpSetRefUN();
  OwnDatabase database(folder + "/store.fdb");
  validation.WriteFastdb(database.Get());
  topology.tpWriteFastdb(database.Get());
  Switch(model, topology);
  topology.tpWriteChangedData(database.Get());
  const std::string flows = FlowsOf(database.Get());
  EXPECT_TRUE(model.ReadFastdb(database.Get()));
  // The times of the runs.
  model.m_globalTable->Clear();
  model.m_tplTable->Clear();
  EXPECT_TRUE(model.WriteObject(QString::fromStdString(folder + "/model.obj")));
  return BytesOf(folder + "/model.obj") + flows;
}

std::string WholePath(const std::string& folder, quint64 seed) {
  return WholePath(folder, seed, [](LogKind, std::string_view) {});
}

}  // namespace dtsdb::test

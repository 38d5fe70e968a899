// Bytes as a model and what is done to it: validation, topology, switching, additions and removals, flows. In between
// what the tables hold must be what other ways of working it out give.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "analysis/switching.h"
#include "breakerflow/flows.h"
#include "formats/failure.h"
#include "formats/text_table_file.h"
#include "fuzz/any_model.h"
#include "fuzz/byte_source.h"
#include "fuzz/require.h"
#include "tests/support/image.h"
#include "tests/topology/plain_stages.h"
#include "tests/topology/same_tables.h"
#include "tests/topology/tp_probe.h"
#include "validation/editing.h"

namespace {

using namespace dtsdb;

/// What is stored as an object file loads as the same tables.
void RequireSameObjectFile(DTSDB& model) {
  const QByteArray image = test::ImageOf(model);
  DTSDB again;
  fuzz::Require(test::LoadImage(again, image).isNull(), "an object file is read that was written");
  fuzz::Require(test::ImageOf(again) == image, "the object file of what was read");
}

/// What is written as text tables is read as the same records. Not all models can be written or read as text.
void RequireSameTextTables(DTSDB& model) {
  ForEachTable(model, []<class T>(tTable<T>& table) {
    std::string written;
    try {
      written = tools::TextTable(table);
    } catch (const tools::Failure&) {
      return;
    }
    tTable<T> again;
    try {
      tools::ReadTextTable("chain.csv", written, again);
    } catch (const tools::Failure&) {
      return;  // equal identities, which no text table may have
    }
    fuzz::Require(again.GetCount() == table.GetCount(), "as many rows as were written");
    fuzz::Require(tools::TextTable(again) == written, "the text table of what was read");
  });
}

bool IsGood(DTSDB& model) { return model.m_globalTable->GetCount() > 0 && model.m_globalTable->GetPh(0).valid == 1; }

/// Switches components at random. By the careful rules the topology must always be that of a full run.
void Switch(fuzz::ByteSource& bytes, DTSDB& model) {
  auto switching = analysis::Switching::Begin(analysis::Model::Of(model));
  if (!switching) return;
  for (int runs = bytes.Below(4); runs > 0; --runs) {
    std::vector<SwitchEvent> events;
    for (int left = 1 + bytes.Below(6); left > 0; --left) {
      const int type = 1 + bytes.Below(16);
      const bool on = bytes.Chance(50);
      events.push_back({type, on, "E" + std::to_string(bytes.Below(40))});
    }
    for (const SwitchEvent& event : events) switching->Request(event);
    if (!switching->Run()) return;
    fuzz::Require(switching->CompareWithFullRun().empty(), "the topology of a full run");
  }
}

/// A full run leaves the tables that the plain form over whole tables leaves.
void RequirePlainRun(DTSDB& model) {
  DTSDB twin;
  const QByteArray image = test::ImageOf(model);
  // Both from the file: it doesn't keep what lies in most of the free slots.
  for (DTSDB* const copy : {&model, &twin}) {
    fuzz::Require(test::LoadImage(*copy, image).isNull(), "a copy of the model");
  }
  TP quick(&model);
  TP plain(&twin);
  const bool done = quick.tpAllnew() == 1;
  fuzz::Require(test::PlainRun(TpProbe(plain).Lend()).RunAnew() == done, "the plain run ends as the quick one");
  const std::string difference = done ? test::DifferentTables(model, twin) : std::string();
  fuzz::Require(difference.empty(), ("the tables of the plain run: " + difference).c_str());
  quick.tpChange();
  quick.tpSetRefUN();
}

template <class Record>
void EditOne(fuzz::ByteSource& bytes, DTSDB& model, NMD& nmd) {
  tTable<Record>& table = TableOf<Record>(model);
  if (bytes.Chance(50) && table.GetCount() > 0) {
    RemoveRecord(nmd, Record(table[bytes.Below(table.GetCount())].id));
    return;
  }
  Record record;
  if (table.GetCount() > 0) record = table[bytes.Below(table.GetCount())];
  ClearLinks(record);
  record.id = fuzz::AnyIdentity(bytes);
  const bool isValid = nmd.IsValid(record);
  const bool isAdded = AddRecord(nmd, record);
  fuzz::Require(isValid || !isAdded, "what isn't valid isn't added");
}

void Edit(fuzz::ByteSource& bytes, DTSDB& model, NMD& nmd) {
  for (int left = bytes.Below(8); left > 0; --left) {
    int at = bytes.Below(13);
    ForEachType(EditedRecords(), [&]<class Record> {
      if (at-- == 0) EditOne<Record>(bytes, model, nmd);
    });
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool silent = fuzz::Silence();
  fuzz::Require(silent, "logs are off");
  fuzz::ByteSource bytes(data, size);
  DTSDB model;
  fuzz::FillAnyModel(bytes, model);
  fuzz::DamageModel(bytes, model, bytes.Chance(50) ? 6 : 0);
  NMD nmd(&model);
  for (int rounds = 1 + bytes.Below(3); rounds > 0; --rounds) {
    nmd.DetectAll();
    RequireSameObjectFile(model);
    RequireSameTextTables(model);
    if (IsGood(model)) {
      RequirePlainRun(model);
      Switch(bytes, model);
    }
    ComputeFlows(model);
    Edit(bytes, model, nmd);
  }
  // Numbers that lead nowhere or in circles, under a good verdict.
  fuzz::DamageModel(bytes, model, 8);
  TP topology(&model);
  topology.tpAllnew();
  topology.tpChange();
  topology.tpSetRefUN();
  ComputeFlows(model);
  return 0;
}

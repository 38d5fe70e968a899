// What holds for every series of edits.
//
// The environment variable DTSDB_EDIT_OPERATIONS sets how many operations the random scripts make (3000 by default).
#include <cstdlib>

#include "tests/topology/random_network.h"
#include "tests/validation/model_links.h"
#include "tests/validation/random_edits.h"

namespace dtsdb::test {
namespace {

int OperationCount() {
  const char* const count = std::getenv("DTSDB_EDIT_OPERATIONS");
  return count != nullptr ? std::atoi(count) : 3000;
}

/// Adds points to measure, which random networks don't have.
void AddPoints(ModelBuilder& m) {
  for (const char* id : {"T1", "T2", "T3"}) m.Analog(id).Status(id);
}

// Additions alone

/// What a run over the model's input makes, before it turns physical numbers into logical ones (which has its own
/// peculiarities).
ModelLinks LinksOfARun(DTSDB& edited, DTSDB& fresh) {
  const auto copy = [&]<class T>(tTable<T>& from) {
    for (int i = 0; i < from.GetCount(); ++i) TableOf<T>(fresh).Add(from[i]);
  };
  copy(*edited.m_analogTable);
  copy(*edited.m_statusTable);
  ForEachType(EditedRecords(), [&]<class T> { copy(TableOf<T>(edited)); });
  NMD nmd(&fresh);
  NmdAccess::StartDetect(nmd);
  EXPECT_TRUE(NmdAccess::RunChecks(nmd));
  for (const Finding& finding : nmd.Findings()) EXPECT_NE(finding.severity, Severity::kError) << Utf8(finding.text);
  ModelLinks::ClearNodeMark(fresh, ND_HAS_BUS);
  return ModelLinks(fresh);
}

/// Additions of every kind to a random network without lines, windings and zero-impedance branches: what a run makes
/// of these has peculiar numbers of its own. Returns how many succeeded.
int TestAdditions(unsigned seed) {
  RandomNetwork network(seed);
  ModelBuilder& m = network.Model();
  m.Table<LN>().Clear();
  m.Table<DLN>().Clear();
  m.Table<XF>().Clear();
  m.Table<ZBR>().Clear();
  AddPoints(m);
  Editing edit(m);
  EXPECT_TRUE(edit.IsGood());

  RandomEdits random(edit, seed);
  random.scattered = seed % 2 == 0;
  int added = 0;
  const auto add = [&](auto record) {
    random.Make(record);
    if (edit.Add(record).empty()) ++added;
  };
  // Lines and zero-impedance branches are taken for others where they don't sort last (AddLN, AddDLN, AddZBR), which is
  // tested apart: they come with ascending names only. They are the last three kinds.
  const int last = random.scattered ? kEditedCount - 4 : kEditedCount - 1;
  for (int i = 0; i < 150; ++i) VisitEdited(network.Number(0, last), add);

  DTSDB fresh;
  ModelLinks wanted = LinksOfARun(m.Db(), fresh);
  ModelLinks::ClearNodeMark(m.Db(), ND_HAS_BUS);  // AddBUS leaves this mark to the next run
  ModelLinks made(m.Db());
  for (ModelLinks* const links : {&wanted, &made}) {
    // AddLN, AddDLN: the head of a district's first line goes to the district numbered like the from station.
    links->Drop("DV", "R_DV_LN");
    links->Drop("DV", "R_DV_DLN");
    // AddZBR: the stored row and its ends don't get the measurements.
    for (const char* field : {"iana_p", "iana_q", "iana_i"}) {
      links->Drop("ZBR", field);
      links->Drop("ZBR2", field);
    }
  }
  EXPECT_EQ(made.All(), wanted.All()) << "seed " << seed;
  EXPECT_EQ(edit.Revalidate(), Texts()) << "seed " << seed;
  EXPECT_TRUE(edit.IsGood());
  return added;
}

TEST(EditProperty, AdditionsAloneMakeWhatARunOverTheFinalInputMakes) {
  int added = 0;
  for (unsigned seed = 1; seed <= 30; ++seed) added += TestAdditions(seed);
  EXPECT_GT(added, 30 * 75) << "most of them succeed";
}

// Random scripts

/// One addition or removal of a record of a class; true when it succeeds.
template <class Record>
bool RandomEditOf(Editing& edit, RandomEdits& random) {
  if (random.Chance(60)) {
    Record record;
    random.Make(record);
    if (random.Chance(15)) random.Spoil(record);
    const bool mayBeAdded = edit.IsGood() && edit.Why(record).empty();
    const bool isAdded = edit.Add(record).empty();
    EXPECT_TRUE(mayBeAdded || !isAdded);
    EXPECT_TRUE(!isAdded || edit.model.Table<Record>().Find(record) != -1);
    return isAdded;
  }
  const Record record(random.Chance(95) ? random.Any<Record>() : QStringLiteral("nowhere"));
  const int before = edit.model.Table<Record>().GetCount();
  const bool isRemoved = edit.Remove(record).empty();
  EXPECT_TRUE(!isRemoved || edit.model.Table<Record>().GetCount() < before);
  return isRemoved;
}

bool RandomEdit(Editing& edit, RandomEdits& random) {
  // Containers, the first four, seldom, so that the network lives on.
  const int kind = random.Chance(4) ? random.Number(0, 3) : random.Number(4, kEditedCount - 1);
  bool isDone = false;
  VisitEdited(kind, [&]<class Record>(const Record&) { isDone = RandomEditOf<Record>(edit, random); });
  return isDone;
}

/// Takes out the records that a run found fault with: those that name something that was removed, most of all.
void DropFaulty(Editing& edit) {
  ModelBuilder& m = edit.model;
  for (const Finding& finding : edit.nmd.Findings()) {
    if (finding.severity != Severity::kError) continue;
    const auto drop = [&]<class Record>(const Record&) {
      if (finding.table != kKindOf<Record>) return;
      const int number = m.Table<Record>().Find(Record(finding.id));
      if (number != -1) m.Table<Record>().Remove(number);
    };
    for (int kind = 0; kind < kEditedCount; ++kind) VisitEdited(kind, drop);
  }
  for (int i = m.Table<ZBR>().GetCount() - 1; i >= 0; --i) {  // the finding on such a branch names none
    if (m.Table<CB>().Find(CB(m.Table<ZBR>()[i].cb)) == -1) m.Table<ZBR>().Remove(m.Table<ZBR>().LgToPh(i));
  }
}

/// Validates; where records name what was removed, takes them out and validates again, until the model is good.
void PutInOrder(Editing& edit) {
  EXPECT_TRUE(edit.nmd.DetectAll());
  for (int i = 0; i < 20 && !edit.IsGood(); ++i) {
    DropFaulty(edit);
    EXPECT_TRUE(edit.nmd.DetectAll());
  }
}

TEST(EditProperty, RandomScriptsNeitherCrashNorHangAndARunPutsTheModelInOrder) {
  const MessageCatcher catcher;  // numbers that are none are warned of
  const int wanted = OperationCount();
  int tried = 0;
  int done = 0;
  for (unsigned seed = 1; tried < wanted; ++seed) {
    RandomNetwork network(seed);
    AddPoints(network.Model());
    Editing edit(network.Model());
    ASSERT_TRUE(edit.IsGood());
    RandomEdits random(edit, seed);
    random.scattered = seed % 2 == 0;
    for (int round = 0; round < 4; ++round) {
      for (int i = 0; i < 50; ++i, ++tried) done += RandomEdit(edit, random) ? 1 : 0;
      PutInOrder(edit);
      ASSERT_TRUE(edit.IsGood()) << "seed " << seed << ": " << testing::PrintToString(edit.Revalidate());
    }
    MessageCatcher::Lines().clear();
  }
  EXPECT_GT(done, tried / 3) << "many of them succeed";
}

/// Puts wrong numbers into some records of a table.
template <class T>
void DamageNumbers(tTable<T>& table, RandomEdits& random) {
  for (int hit = random.Number(0, 3); hit > 0 && table.GetCount() > 0; --hit) {
    T& record = table[random.Number(0, table.GetCount() - 1)];
    int at = random.Number(0, static_cast<int>(T::Fields().size()) - 1);
    const int numbers[] = {-2, -1, 0, 1, random.Number(0, 20), 300, 1 << 30};
    const int number = numbers[random.Number(0, 6)];
    for (const FieldInfo& field : T::Fields()) {
      if (field.type != FieldType::kI32) continue;
      if (at-- == 0 && (T::kKey != RecordKey::kNumbered || std::string_view(field.name) != "id")) {
        field.In<i32>(&record) = number;
      }
    }
  }
}

TEST(EditProperty, WrongNumbersDoNoHarmAndARunPutsTheModelInOrder) {
  const MessageCatcher catcher;
  const int wanted = OperationCount() / 3;
  int tried = 0;
  for (unsigned seed = 1; tried < wanted; ++seed) {
    RandomNetwork network(seed);
    AddPoints(network.Model());
    Editing edit(network.Model());
    RandomEdits random(edit, seed);
    for (int round = 0; round < 5; ++round) {
      ForEachTable(edit.model.Db(), [&random](auto& table) { DamageNumbers(table, random); });
      for (int i = 0; i < 10; ++i, ++tried) RandomEdit(edit, random);
    }
    PutInOrder(edit);
    ASSERT_TRUE(edit.IsGood()) << "seed " << seed << ": " << testing::PrintToString(edit.Revalidate());
    MessageCatcher::Lines().clear();
  }
}

}  // namespace
}  // namespace dtsdb::test

// Edit scripts as texts: what a line means, and what is reported of one that means nothing.

#include "script/edit_script.h"

#include <gtest/gtest.h>

#include "formats/failure.h"
#include "formats/field_text.h"
#include "model/text.h"

namespace dtsdb::tools {
namespace {

/// The message on a script that is wrong.
std::string Wrong(const std::string& script) {
  try {
    ReadEditScript("s.txt", script);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Code(), kExitFile);
    return failure.what();
  }
  ADD_FAILURE() << "was read: " << script;
  return "";
}

template <class Record>
Record OnlyRecord(const std::string& script) {
  const std::vector<Edit> edits = ReadEditScript("s.txt", script);
  EXPECT_EQ(edits.size(), 1U);
  EXPECT_TRUE(std::holds_alternative<Record>(edits.at(0).record));
  return std::get<Record>(edits.at(0).record);
}

TEST(EditScript, AddGivesARecordWithItsFields) {
  const LD ld = OnlyRecord<LD>("add LD id=乙荷 kv=乙站220 nd=乙1 p=12.5 status=1");
  EXPECT_EQ(IdText(ld.id), "乙荷");
  EXPECT_EQ(IdText(ld.kv), "乙站220");
  EXPECT_EQ(ld.p, 12.5F);
  EXPECT_EQ(ld.status, 1U);
  EXPECT_EQ(ld.ref, -1) << "the default of the field";
  EXPECT_EQ(ld.f1, 0.0F);
}

/// The names of the fields of a new record that hold -1.
template <class Record>
std::string Unset() {
  const Record record = OnlyRecord<Record>(std::string("add ") + Record::kTableName + " id=x");
  std::string names;
  for (const FieldInfo& field : Record::Fields()) {
    if (FieldText(field, &record) == "-1") names += std::string(field.name) + " ";
  }
  return names;
}

TEST(EditScript, AddSetsEveryNumberOfAnotherRecordToNone) {
  EXPECT_EQ(Unset<CO>(), "r_co_dv ");
  EXPECT_EQ(Unset<ST>(), "r_dv_st r_st_kv r_st_xf ");
  EXPECT_EQ(Unset<KV>(), "ibs ibsl r_st_kv r_kv_un r_kv_cb r_kv_ld r_kv_cp r_kv_bus r_kv_zbr r_kv_nd ");
  EXPECT_EQ(Unset<BUS>(), "ind ibs iana_v iana_a r_kv_bus ");
  EXPECT_EQ(Unset<CB>(), "istatus cb2 zcb2 ind iznd ibs izbs r_kv_cb ");
  EXPECT_EQ(Unset<ZBR>(), "icb ind iznd ibs izbs zbr2 zzbr2 iana_p iana_q iana_i r_kv_zbr ");
  EXPECT_EQ(Unset<DLN>(), "ind iznd ibs izbs dln2 zdln2 iana_p iana_q iana_i izana_p izana_q izana_i r_dv_dln ");
}

TEST(EditScript, RemoveGivesAnIdentity) {
  const std::vector<Edit> edits = ReadEditScript("s.txt", "remove CB \"Breaker 7\"\n");
  ASSERT_EQ(edits.size(), 1U);
  EXPECT_EQ(edits[0].kind, EditKind::kRemove);
  EXPECT_EQ(edits[0].line, 1);
  EXPECT_EQ(IdText(std::get<CB>(edits[0].record).id), "Breaker 7");
}

TEST(EditScript, ChangeGivesAnIdentityAndTheFieldsWithNewValues) {
  const std::vector<Edit> edits = ReadEditScript("s.txt", "change LD 乙荷 q=3 p=12.5\n");
  ASSERT_EQ(edits.size(), 1U);
  EXPECT_EQ(edits[0].kind, EditKind::kChange);
  const LD& ld = std::get<LD>(edits[0].record);
  EXPECT_EQ(IdText(ld.id), "乙荷");
  EXPECT_EQ(ld.p, 12.5F);
  std::vector<std::string> changed;
  for (const FieldInfo* const field : edits[0].changed) changed.emplace_back(field->name);
  EXPECT_EQ(changed, (std::vector<std::string>{"q", "p"}));
}

TEST(EditScript, LinesKeepTheirNumbersWhateverTheirEnds) {
  const std::vector<Edit> edits =
      ReadEditScript("s.txt", "\xEF\xBB\xBF# a comment\r\n\r\n  add\tCO  id=a \r\n   \n#\nremove CO b#");
  ASSERT_EQ(edits.size(), 2U);
  EXPECT_EQ(edits[0].line, 3);
  EXPECT_EQ(edits[1].line, 6);
  EXPECT_EQ(IdText(std::get<CO>(edits[1].record).id), "b#") << "a note stands apart";
  EXPECT_TRUE(ReadEditScript("s.txt", "").empty());
}

TEST(EditScript, QuotesHoldBlanksAndDoubledQuotes) {
  EXPECT_EQ(IdText(OnlyRecord<CO>(R"(add CO id="a ""b""  c")").id), R"(a "b"  c)");
  EXPECT_EQ(IdText(OnlyRecord<CO>(R"(add CO "id=a b")").id), "a b");
  EXPECT_EQ(IdText(OnlyRecord<CO>("add CO id=a=b").id), "a=b");
  EXPECT_EQ(IdText(OnlyRecord<DV>(R"(add DV id=a co="")").co), "");
}

TEST(EditScript, TablesAreFoundInEitherCase) { EXPECT_EQ(IdText(OnlyRecord<DLN>("add dln id=a").id), "a"); }

TEST(EditScript, WrongLinesAreReportedWithTheirNumber) {
  EXPECT_EQ(Wrong("\n\nfly CB x"), "s.txt, line 3: a line begins with 'add', 'change' or 'remove', not with 'fly'");
  EXPECT_EQ(Wrong("add"), "s.txt, line 1: 'add' needs a table");
  EXPECT_EQ(Wrong("add LNN id=x"), "s.txt, line 1: there is no table 'LNN' that can be edited; did you mean LN?");
  EXPECT_EQ(Wrong("add ND id=x"), "s.txt, line 1: table ND can't be edited: its records follow from those of others");
  EXPECT_EQ(Wrong("add LD kv=x"), "s.txt, line 1: id=... is missing: a record needs an identity");
  EXPECT_EQ(Wrong("add LD id="), "s.txt, line 1: id=... is missing: a record needs an identity");
  EXPECT_EQ(Wrong("add LD id=x node"), "s.txt, line 1: 'node' is not of the form FIELD=VALUE");
  EXPECT_EQ(Wrong("add LD id=x =y"), "s.txt, line 1: '=y' is not of the form FIELD=VALUE");
  EXPECT_EQ(Wrong("add CB id=x flag=1"), "s.txt, line 1: field flag: the table has no such field; did you mean flags?");
  EXPECT_EQ(Wrong("add LD id=x p=1 p=2"), "s.txt, line 1: field p stands twice");
  EXPECT_EQ(Wrong("change LD x"), "s.txt, line 1: 'change' takes a table, an identity and FIELD=VALUE");
  EXPECT_EQ(Wrong("change LD x id=y"),
            "s.txt, line 1: an identity can't be changed; remove the record and add it with the other one");
  EXPECT_EQ(Wrong("change LD x ind=7"),
            "s.txt, line 1: field ind: is a number that an addition works out; it can't be given");
  EXPECT_EQ(Wrong("change LD x p=1 p=2"), "s.txt, line 1: field p stands twice");
  EXPECT_EQ(Wrong("add LD id=x p=many"), "s.txt, line 1: field p: 'many' is no number");
  EXPECT_EQ(Wrong("add LD id=x p="), "s.txt, line 1: field p: '' is no number");
  EXPECT_EQ(Wrong("add ST id=x type=256"), "s.txt, line 1: field type: '256' is out of range, 0 to 255");
  EXPECT_EQ(Wrong("add LD id=x ind=7"),
            "s.txt, line 1: field ind: is a number that an addition works out; it can't be given");
  EXPECT_EQ(Wrong("add CB id=x zcb2=7"),
            "s.txt, line 1: field zcb2: is a number that an addition works out; it can't be given");
  EXPECT_EQ(Wrong("add LD id=😀"), "s.txt, line 1: field id: GBK can't hold the text '😀'");
  EXPECT_EQ(Wrong("add LD id=\xFF"), "s.txt, line 1: field id: the text is no valid UTF-8");
  EXPECT_EQ(Wrong("remove CB"), "s.txt, line 1: 'remove' takes a table and one identity");
  EXPECT_EQ(Wrong("remove CB a b"), "s.txt, line 1: 'remove' takes a table and one identity");
  EXPECT_EQ(Wrong("remove CB \"\""), "s.txt, line 1: a record needs an identity");
  EXPECT_EQ(Wrong("remove CB \"a b"), "s.txt, line 1: a quote isn't closed");
}

}  // namespace
}  // namespace dtsdb::tools

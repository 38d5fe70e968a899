#include "formats/csv.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>

namespace dtsdb::tools {
namespace {

std::vector<CsvRow> Rows(std::string_view bytes) {
  std::vector<CsvRow> rows;
  ReadCsv(bytes, [&rows](const CsvRow& row) { rows.push_back(row); });
  return rows;
}

std::vector<CsvField> Fields(std::string_view bytes) {
  const auto rows = Rows(bytes);
  return rows.size() == 1 ? rows[0].fields : std::vector<CsvField>();
}

using List = std::vector<CsvField>;

TEST(Csv, PartsFieldsAtCommas) { EXPECT_EQ(Fields("a,b,c\n"), (List{"a", "b", "c"})); }

TEST(Csv, KeepsBlanksThatBelongToAField) { EXPECT_EQ(Fields(" a ,\t,\" b \"\n"), (List{" a ", "\t", " b "})); }

TEST(Csv, QuotesHoldCommasQuotesAndLineEnds) {
  EXPECT_EQ(Fields("\"a,b\",\"c\"\"d\",\"e\r\nf\"\n"), (List{"a,b", "c\"d", "e\r\nf"}));
}

TEST(Csv, AFieldLeftOutIsNoEmptyText) { EXPECT_EQ(Fields(",\"\",\n"), (List{std::nullopt, "", std::nullopt})); }

TEST(Csv, LinesEndInCrLfInLfOrInCr) {
  for (const char* text : {"a\r\nb\r\n", "a\nb\n", "a\rb\r"}) {
    const auto rows = Rows(text);
    ASSERT_EQ(rows.size(), 2U) << text;
    EXPECT_EQ(rows[1].fields, (List{"b"}));
    EXPECT_EQ(rows[1].line, 2);
  }
}

TEST(Csv, LastLineNeedsNoEnd) { EXPECT_EQ(Fields("a,b"), (List{"a", "b"})); }

TEST(Csv, PassesOverBlankLinesAndCountsThem) {
  const auto rows = Rows("a\n\n\nb\n");
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[1].line, 4);
}

TEST(Csv, RowHasTheNumberOfItsFirstLine) {
  const auto rows = Rows("a\n\"b\nc\"\nd\n");
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[1].line, 2);
  EXPECT_EQ(rows[2].line, 4);
}

TEST(Csv, EmptyTextHasNoRows) { EXPECT_TRUE(Rows("").empty()); }

TEST(Csv, RefusesAnUnterminatedQuoteAtTheRowWhereItBegins) {
  try {
    Rows("a,b\nc,\"d\ne\n");
    FAIL() << "read";
  } catch (const CsvError& error) {
    EXPECT_EQ(error.Line(), 2);
    EXPECT_EQ(error.Field(), 1U);
    EXPECT_STREQ(error.what(), "the closing quote is missing");
  }
}

TEST(Csv, RefusesAQuoteInsideAPlainFieldAndTextBehindAClosingQuote) {
  EXPECT_THROW(Rows("a\"b\n"), CsvError);
  EXPECT_THROW(Rows("\"a\"b\n"), CsvError);
}

TEST(Csv, GuardsWhatASpreadsheetTakesForAFormula) {
  for (const char* text : {"=1", "+1", "-1", "@x", "\t1", "\r1", "'=1", "''@"}) {
    EXPECT_EQ(GuardedText(text), std::string("'") + text);
    EXPECT_EQ(UnguardedText(GuardedText(text)), text);
  }
  for (const char* text : {"", "a=1", "'a", "'", "''", "1-2"}) {
    EXPECT_EQ(GuardedText(text), text);
    EXPECT_EQ(UnguardedText(text), text);
  }
}

TEST(Csv, OfADamagedTextIsReadOnBehindTheFaultyLine) {
  std::vector<std::string> read;
  std::vector<int> faults;
  SalvageCsv(
      "a,b\n1,\"open\n2,x\"y\n\"3\n3\",c\n4,\"",
      [&](const CsvRow& row) { read.push_back(row.fields.front().value_or("")); },
      [&](const CsvError& error) { faults.push_back(error.Line()); });
  EXPECT_EQ(read, (std::vector<std::string>{"a", "3\n3"}));
  EXPECT_EQ(faults, (std::vector{2, 3, 6}));
}

RC_GTEST_PROP(Csv, ReadsBackEveryRowThatItWrites, (const std::vector<std::vector<std::string>>& texts)) {
  std::string written;
  std::vector<List> expected;
  for (const auto& row : texts) {
    List fields = {"first"};  // a row of one field left out would be a blank line
    for (const std::string& text : row) fields.push_back(text == "a" ? CsvField() : CsvField(text));
    for (std::size_t i = 0; i < fields.size(); ++i) AppendCsvField(written, fields[i], i == 0);
    written += "\r\n";
    expected.push_back(fields);
  }
  std::vector<List> read;
  ReadCsv(written, [&read](const CsvRow& row) { read.push_back(row.fields); });
  RC_ASSERT(read == expected);
}

}  // namespace
}  // namespace dtsdb::tools

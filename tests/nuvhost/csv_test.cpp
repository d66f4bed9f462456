#include "nuvhost/reading/csv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "nuvhost/reading/source_text.h"

namespace nuvhost {
namespace {

/// A table's columns as "header: 1 2 3; header: 4 5 6", or its mistakes.
std::string Shown(const std::string& text) {
  Mistakes mistakes;
  const std::optional<CsvTable> table = CsvTable::Read(SourceText("f.csv", text), mistakes);
  std::string shown;
  for (std::size_t column = 0; table && column < table->Columns(); ++column) {
    if (column > 0) shown += "; ";
    if (!table->Header().empty()) shown += table->Header()[column] + ": ";
    const CNuvDoubleVector numbers = table->Numbers(column, mistakes);
    for (std::size_t row = 0; row < numbers.Size(); ++row) {
      char number[32];
      std::snprintf(number, sizeof number, row == 0 ? "%g" : " %g", numbers[row]);
      shown += number;
    }
  }
  for (const std::string& mistake : mistakes.Listing()) shown += "| " + mistake;
  return shown;
}

TEST(Csv, ReadsWhatSpreadsheetsWrite) {
  struct Row {
    const char* text;
    const char* shown;
  };
  constexpr Row kRows[] = {
      {"1\n2\n3", "1 2 3"},
      {"1\r\n2\r\n\r\n \n", "1 2"},
      {"\xEF\xBB\xBFspeed\n1\n", "speed: 1"},
      {"speed", "speed: "},
      {"x,y\n1,2\n3,4\n", "x: 1 3; y: 2 4"},
      {"x;y\n1;2\n", "x: 1; y: 2"},
      {"x\ty, z\n1\t2\n", "x: 1; y, z: 2"},
      {"\"a,b\"\"c\";d\n\"1\";-2e3\n", "a,b\"c: 1; d: -2000"},
      {"\"two\nlines\",x\r\n\"1\",\"2\"\r\n", "two\nlines: 1; x: 2"},
      {" x , y\n 1 ,\t+2\n", "x: 1; y: 2"},
      {"NaN\nInfinity\n-Infinity\n1e-999\n", "nan inf -inf 0"},
      {"1,2\n3\n", "| f.csv:2:1: the line has 1 field, the first line has 2"},
      {"a\n1\n\n2\n", "a: 1 0 2| f.csv:3:1: an empty field, where a number belongs"},
      {"a,b\n1,2x\n\xC3\xBC,3\n",
       "a: 1 0; b: 0 3| f.csv:2:3: \"2x\" is no number| f.csv:3:1: \"\xC3\xBC\" is no number"},
      {"\xC3\xBC;b\n\"\xC3\xBC\";1,5\n",
       "\xC3\xBC: 0; b: 0| f.csv:2:2: \"\xC3\xBC\" is no number"
       "| f.csv:2:5: \"1,5\" is no number; write a decimal point"},
      {"a\n1e999\n", "a: 0| f.csv:2:1: \"1e999\" is beyond the range of numbers"},
      {"a\ninf\n", "a: 0| f.csv:2:1: \"inf\" is no number"},
      {"a\n0x10\n", "a: 0| f.csv:2:1: \"0x10\" is no number"},
      {"a\n+-1\n", "a: 0| f.csv:2:1: \"+-1\" is no number"},
      {"a\n\"1\n", "| f.csv:2:1: a quoted field without its closing quote"},
      {"a\n\"1\"2\n", "| f.csv:2:4: more text after a field's closing quote"},
      {"", "| f.csv: the file is empty"},
      {"\n\n", "| f.csv: the file is empty"},
      {"\xFF\xFEx", "| f.csv: the file is in UTF-16; save it in UTF-8"},
      {"\xEF\xBB\xBF\xEF\xBB\xBFx\n1\n",
       "| f.csv:1:1: a second byte order mark; save the file with one or none"},
  };
  for (const Row& row : kRows) EXPECT_EQ(Shown(row.text), row.shown) << row.text;
  EXPECT_EQ(Shown({"a\n\xC3\xBC\0", 5}),
            "| f.csv:2:2: a zero byte; the file must be text in UTF-8");
}

TEST(Csv, FindsColumns) {
  struct Row {
    const char* text;
    ColumnName name;
    const char* found;
  };
  const Row rows[] = {
      {"height,width\n1,2\n", "width", "1"},
      {"height,width\n1,2\n", 0u, "0"},
      {"height,width\n1,2\n", 2u, "no column 2, counted from 0"},
      {"height,width\n1,2\n", "heigth", "has no column \"heigth\", did you mean \"height\"?"},
      {"height,width\n1,2\n", "depth of it", "it has 2 columns: \"height\", \"width\""},
      {"1,2\n", "height", "has no header; name the column by its position, from 0 to 1"},
      {"x,x\n1,2\n", "x", "more than one column \"x\"; name it by its position"},
  };
  for (const Row& row : rows) {
    Mistakes mistakes;
    const auto table = CsvTable::Read(SourceText("f.csv", row.text), mistakes);
    std::string reason;
    const std::optional<std::size_t> column = table->Find(row.name, reason);
    EXPECT_NE((column ? std::to_string(*column) : reason).find(row.found), std::string::npos)
        << reason;
  }
}

TEST(Csv, EveryNumberSurvivesAFile) {
  std::mt19937_64 random(11);
  std::string text;
  std::vector<double> written;
  for (int i = 0; i < 2000; ++i) {
    const double number =
        std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 2000) - 1070);
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.17g\n", number);
    text += digits;
    written.push_back(number);
  }
  Mistakes mistakes;
  const auto table = CsvTable::Read(SourceText("f.csv", text), mistakes);
  const CNuvDoubleVector read = table->Numbers(0, mistakes);
  ASSERT_TRUE(mistakes.Empty()) << mistakes.Listing()[0];
  for (std::size_t i = 0; i < written.size(); ++i) ASSERT_EQ(read[i], written[i]);
}

TEST(Csv, AnyBytesAreReadOrRefused) {
  std::mt19937 random(12);
  constexpr std::string_view kBytes = "\"\",;\t\r\n1.-ea \xC3\xFF";
  for (int round = 0; round < 20000; ++round) {
    std::string text(random() % 24, ' ');
    for (char& c : text) c = kBytes[random() % kBytes.size()];
    Mistakes mistakes;
    const auto table = CsvTable::Read(SourceText("f.csv", text), mistakes);
    ASSERT_NE(table.has_value(), !mistakes.Empty()) << text;
    if (!table) continue;
    const std::size_t last = table->Columns() - 1;
    EXPECT_EQ(table->Numbers(last, mistakes).Size(), table->Points(0, last, mistakes).Size());
  }
}

}  // namespace
}  // namespace nuvhost

#include "nuvhost/reading/csv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>

#include "host/records.h"
#include "host/vectors.h"
#include "nuvhost/reading/source_text.h"

namespace nuvhost {
namespace {

CNuvObject Column(const CsvTable& table, std::size_t column, Mistakes& mistakes) {
  const ChosenRows rows = table.WithoutBlankEnd(ChosenRows(table.Rows()), {column});
  return table.Array(NUV_PARAM_NUMBER_ARRAY, {column}, rows, mistakes);
}

/// A table's columns as "header: 1 2 3; header: 4 5 6", or its mistakes.
std::string Shown(const std::string& text) {
  Mistakes mistakes;
  const auto table = CsvTable::Read(SourceText("f.csv", text), mistakes);
  std::string shown;
  for (std::size_t column = 0; table && column < table->Columns(); ++column) {
    if (column > 0) shown += "; ";
    if (!table->Header().empty()) shown += table->Header()[column] + ": ";
    const CNuvObject numbers = Column(*table, column, mistakes);
    const auto& vector = static_cast<const CNuvDoubleVector&>(numbers);
    for (std::size_t row = 0; row < vector.Size(); ++row) {
      char number[32];
      std::snprintf(number, sizeof number, row == 0 ? "%g" : " %g", vector[row]);
      shown += number;
    }
  }
  for (const std::string& mistake : mistakes.Listing()) shown += "| " + mistake;
  return shown;
}

// What a transcript cannot hold; tests/transcripts/run_tables.txt has all other tables.
TEST(Csv, ReadsAnyBytes) {
  const std::pair<std::string, const char*> rows[] = {
      {"1\r\n2\r\n\r\n \n", "1 2"},
      {"\xEF\xBB\xBFspeed\n1\n", "speed: 1"},
      {"speed", "speed: "},
      {"\"two\nlines\",x\r\n\"1\",\"2\"\r\n", "two\nlines: 1; x: 2"},
      {"\"two\nlines\";5\" x\n1;2\n", "two\nlines: 1; 5\" x: 2"},
      {"x y\n1 2\n 3  4 \r\n5 6", "x: 1 3 5; y: 2 4 6"},
      {"\xFF\xFEx", "| f.csv: the file is in UTF-16; save it in UTF-8"},
      {"\xEF\xBB\xBF\xEF\xBB\xBFx\n1\n",
       "| f.csv:1:1: a second byte order mark; save the file with one or none"},
      {{"a\n\xC3\xBC\0", 5}, "| f.csv:2:2: a zero byte; the file must be text in UTF-8"},
  };
  for (const auto& [text, shown] : rows) EXPECT_EQ(Shown(text), shown) << text;
}

/// Against rows that are split a character at a time.
TEST(Csv, SplitsAnyLinesAsTheyStand) {
  std::mt19937 random(7);
  constexpr const char* kPieces[] = {"1", "-2.5", "1234567890123", "", "x", "\"q,\"\"\n\""};
  for (int round = 0; round < 5000; ++round) {
    std::string text = "a,b,c\n";
    std::vector<std::vector<std::string>> rows;
    bool is_equal = true;
    const std::size_t kinds = random() % 4 == 0 ? 6 : 5;
    for (std::size_t left = 1 + random() % 20; left > 0; --left) {
      const std::size_t fields = random() % 40 == 0 ? 1 + random() % 5 : 3;
      std::vector<std::string>& row = rows.emplace_back();
      for (std::size_t field = 0; field < fields; ++field) {
        const std::size_t kind = field == 0 ? 0 : random() % kinds;
        row.emplace_back(kind == 5 ? "q,\"\n" : kPieces[kind]);
        text += (field == 0 ? "" : ",") + std::string(kPieces[kind]);
      }
      is_equal = is_equal && fields == 3;
      text += random() % 2 == 0 ? "\n" : "\r\n";
    }
    Mistakes mistakes;
    const auto table = CsvTable::Read(SourceText("f.csv", text), mistakes);
    ASSERT_EQ(table.has_value(), is_equal) << text;
    for (std::size_t column = 0; table && column < 3; ++column) {
      ASSERT_EQ(table->Rows(), rows.size()) << text;
      const CNuvObject cells =
          table->Array(NUV_PARAM_STRING_ARRAY, {column}, ChosenRows(table->Rows()), mistakes);
      const auto& texts = static_cast<const CNuvStringVector&>(cells);
      for (std::size_t row = 0; row < rows.size(); ++row) {
        ASSERT_STREQ(static_cast<const char*>(texts[row]), rows[row][column].c_str()) << text;
      }
    }
  }
}

TEST(Csv, EveryNumberSurvivesAFile) {
  std::mt19937_64 random(11);
  for (const char* signs : {"\n.", ",.", ";,", "\t,", " ,"}) {  // separator, decimal sign
    std::string text;
    std::vector<double> written;
    for (int i = 0; i < 1000; ++i) {
      const double number =
          std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 2000) - 1070);
      char digits[32];
      if (i % 3 == 0) {  // as instruments write them, of up to 23 digits
        const double measured = static_cast<double>(random() % 2'000'000) - 1e6;
        std::snprintf(digits, sizeof digits, "%.*f", i % 17, measured / 7);
      } else {
        std::snprintf(digits, sizeof digits, "%.17g", number);
      }
      written.push_back(std::strtod(digits, nullptr));
      for (char& c : digits) c = c == '.' ? signs[1] : c;
      text += digits + std::string(1, i % 2 == 0 ? signs[0] : '\n');
    }
    Mistakes mistakes;
    const auto table = CsvTable::Read(SourceText("f.csv", text), mistakes, {.decimal = signs[1]});
    ASSERT_TRUE(table);
    const std::size_t columns = signs[0] == '\n' ? 1 : 2;
    ASSERT_EQ(table->Columns(), columns);
    for (std::size_t i = 0; i < written.size(); ++i) {
      const CNuvObject column = i < columns ? Column(*table, i, mistakes) : CNuvObject();
      const auto& numbers = static_cast<const CNuvDoubleVector&>(column);
      for (std::size_t row = 0; row < numbers.Size(); ++row) {
        ASSERT_EQ(numbers[row], written[row * columns + i]);
      }
      ASSERT_EQ(numbers.Size(), i < columns ? written.size() / columns : 0);
    }
    ASSERT_TRUE(mistakes.Empty()) << mistakes.Listing()[0];
  }
}

}  // namespace
}  // namespace nuvhost

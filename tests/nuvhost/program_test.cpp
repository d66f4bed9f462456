#include "nuvhost/reading/program.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "nuvhost/reading/source_text.h"
#include "tests/instr/table.h"

namespace nuvhost {
namespace {

std::vector<std::string> Complaints(const std::string& text) {
  Mistakes mistakes;
  ReadProgram(BuiltCatalogue(), SourceText("p.json", text), mistakes);
  return mistakes.Listing();
}

// What a transcript cannot hold; tests/transcripts/run_mistakes.txt has all other mistakes.
TEST(Program, TellsMistakesInAnyBytes) {
  const std::string deep(201, '[');
  std::string steps = R"({"steps": [)";
  for (int i = 0; i <= 10000; ++i) steps += "1,";
  const std::pair<std::string, const char*> rows[] = {
      {R"({"title": "x})", "1:11: broken JSON: invalid string: missing closing quote"},
      {"{\"title\": \"\xFF\"}", "1:11: "},
      {deep, "1:201: nested over 200 deep"},
      {deep.substr(1), "1:201: broken JSON: unexpected end"},
      {steps + "1]}", "1:20012: more than 10000 steps"},
      {std::string("{\n \0}", 5), "2:2: a zero byte"},
      {"\xEF\xBB\xBF{\"titel\": 1, \"steps\": [3]}", "1:2: "},
      {"\xEF\xBB\xBF\xEF\xBB\xBF{}",
       "1:1: a second byte order mark; save the file with one or none"},
  };
  for (const auto& [text, complaint] : rows) {
    const std::vector<std::string> complaints = Complaints(text);
    ASSERT_FALSE(complaints.empty()) << text;
    EXPECT_TRUE(complaints[0].starts_with(std::string("p.json:") + complaint)) << complaints[0];
  }
}

// Whatever becomes of a program's text, it is read or complained of at a place within it.
TEST(Program, AnyTextIsReadOrRefused) {
  std::ifstream file(PROGRAM_EXAMPLE, std::ios::binary);
  const std::string example{std::istreambuf_iterator<char>(file), {}};
  ASSERT_TRUE(Complaints(example).empty());
  const auto lines = std::ranges::count(example, '\n') + 2;
  std::mt19937 random(3);
  constexpr char kBytes[] = "{}[]\",:0e-. \nat\\\xC3";  // and the zero at its end
  for (int round = 0; round < 1500; ++round) {
    std::string text = example;
    for (std::size_t edits = 1 + random() % 3; edits > 0; --edits) {
      const std::size_t at = random() % text.size();
      const std::size_t length = random() % 8;
      text.replace(at, length, 1, kBytes[random() % sizeof kBytes]);
    }
    const unsigned marks = random() % 4;
    for (unsigned i = 0; i < marks; ++i) text.insert(0, "\xEF\xBB\xBF");
    const std::vector<std::string> complaints = Complaints(text);
    ASSERT_TRUE(!complaints.empty() || (marks < 2 && text.find('\0') == std::string::npos)) << text;
    for (const std::string& complaint : complaints) {
      ASSERT_TRUE(complaint.starts_with("p.json:")) << complaint;
      ASSERT_LE(std::stol(complaint.substr(7)), lines + 3) << complaint;
    }
  }
}

}  // namespace
}  // namespace nuvhost

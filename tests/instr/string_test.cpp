// Texts: random ones against plain versions.

#include <random>

#include "algorithm/text_search.h"
#include "nuvhost/text/utf8.h"
#include "tests/instr/table.h"

namespace {

using formula::TextSearch;
using nuvhost::Json;

/// Of the first letters, so that it repeats itself, or of all bytes where there are 255 of them.
std::string RandomText(std::mt19937& random, std::size_t longest, std::size_t letters) {
  std::string text(random() % (longest + 1), '\0');
  const std::size_t first = letters == 255 ? 1 : 'a';
  for (char& c : text) c = static_cast<char>(first + random() % letters);
  return text;
}

std::string PlainReplace(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = 0; !what.empty() && (at = text.find(what, at)) != std::string::npos;) {
    text.replace(at, what.size(), by);
    at += by.size();
  }
  return text;
}

double Position(std::size_t position) {
  return position == std::string::npos ? -1.0 : static_cast<double>(position);
}

TEST(Strings, ATextBeyondOneGibibyteIsRefusedBeforeItIsMade) {
  nuvhost::ExecSession session(BuiltCatalogue());
  const std::string many(100'000, 'a');
  const nuvhost::Json request{
      {"instr", "_Nuv_String_CReplaceStr_"}, {"in", {many, "a", many}}, {"prev", {"as it was"}}};
  EXPECT_EQ(Exec(session, request.dump()), nuvhost::Json({{"status", 3}, {"out", {"as it was"}}}));
}

TEST(Strings, AgreeWithPlainVersionsOnRandomTexts) {
  nuvhost::ExecSession session(BuiltCatalogue());
  const auto result = [&](const char* name, const Json& inputs) {
    const std::string identifier = std::string("_Nuv_String_") + name + "_";
    return Exec(session, Json{{"instr", identifier}, {"in", inputs}}.dump())["out"][0];
  };
  const auto json = [](const std::string& text) { return Json(nuvhost::Utf8FromBytes(text)); };
  std::mt19937 random(8);
  for (int round = 0; round < 3000; ++round) {
    const std::size_t letters = round % 3 == 0 ? 255 : 2;
    const std::string text = RandomText(random, 60, letters);
    std::string what = RandomText(random, 4, letters);
    if (letters == 255 && !text.empty()) what = text.substr(random() % text.size(), random() % 20);
    const std::string other = RandomText(random, 3, letters);
    const std::size_t n = random() % 12;
    const std::size_t m = random() % 70;
    const std::string middle = m > text.size() ? "" : text.substr(m, n);
    const std::string trimmed = m + n > text.size() ? "" : text.substr(m, text.size() - m - n);
    const Json in = json(text);
    const Json sought = json(what);
    SCOPED_TRACE((Json{in, sought, n, m}).dump());
    EXPECT_EQ(result("CFindStr", {in, sought}), Position(text.find(what)));
    EXPECT_EQ(result("CFindStrReverse", {in, sought}), Position(text.rfind(what)));
    EXPECT_EQ(result("CReplaceStr", {in, sought, json(other)}),
              json(PlainReplace(text, what, other)));
    EXPECT_EQ(result("CMidStr", {in, m, n}), json(middle));
    EXPECT_EQ(result("CTrimStr", {in, m, n}), json(trimmed));
  }
}

// With every budget, so that the search is handed over to the linear method at any point or never.
TEST(TextSearch, FindsAsPlainlyWithAnyBudget) {
  std::mt19937 random(9);
  for (int round = 0; round < 20000; ++round) {
    const std::string text = RandomText(random, 90, 1 + random() % 3);
    std::string what = RandomText(random, 5, 2);
    if (random() % 2 == 0) what = text.substr(text.size() / (1 + random() % 4), random() % 40);
    const std::size_t budget = random() % 3 == 0 ? 0 : random() % 200;
    SCOPED_TRACE("\"" + text + "\" \"" + what + "\" " + std::to_string(budget));
    TextSearch search(text, what, budget);
    for (std::size_t from = 0; from <= text.size() + 1;) {
      const std::size_t found = search.Next(from);
      ASSERT_EQ(found, text.find(what, from)) << from;
      if (found == TextSearch::kNone) break;
      from = found + 1 + random() % 3;
    }
    ASSERT_EQ(TextSearch(text, what, budget).Last(), text.rfind(what));
  }
}

}  // namespace

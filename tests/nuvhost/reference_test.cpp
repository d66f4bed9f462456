#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "nuvhost/error.h"
#include "nuvhost/reference/entries.h"
#include "nuvhost/reference/plain_text.h"
#include "nuvhost/reference/search.h"
#include "nuvhost/text/names.h"
#include "tests/instr/table.h"

namespace nuvhost {
namespace {

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

TEST(Reference, TellsMarkdownAsText) {
  const struct {
    const char* markdown;
    const char* text;
  } cases[] = {
      {"The *first* of\n`a * b`, see [c](d.md#e).", "  The first of a * b, see c.\n"},
      {"2 * 3 is a*b*c, **Fails** *x* 2", "  2 * 3 is a*b*c, Fails x 2\n"},
      {"*array_1 * array_2* and \\*", "  array_1 * array_2 and *\n"},
      {"- one two three four five six seven\n- eight\n  nine",
       "  - one two three four five six\n    seven\n  - eight nine\n"},
      {"10. one\n\n```sh\nrun  it\n\nnow\n```", "  10. one\n\n    run  it\n\n    now\n"},
      {"Above:\n| a | → *b* |\n|---|---|\n| \"*\" | |\n| | x \\| y |",
       "  Above:\n\n  a    → b\n  ---  -----\n  \"*\"\n       x | y\n"},
      {"counted from\n1. No list.", "  counted from 1. No list.\n"},
      {"| a | b |\n|---|---|\n| 1 | one two three four five six seven |\n| 2 | x |",
       "  a  b\n  -  ---------------------------\n  1  one two three four five six\n"
       "     seven\n  2  x\n"},
      {"| long title | b |\n|---|---|\n| 1234567890123456789 | 12345678901234 |\n| | 2 |",
       "  long title  1234567890123456789\n  b           12345678901234\n\n  b           2\n"},
      {"![picture](a.svg)\n\nText", "  Text\n"},
      {"", ""},
  };
  for (const auto& one : cases) EXPECT_EQ(PlainText(one.markdown, 34), one.text);
}

TEST(Reference, HoldsEveryInstructionInReadableLines) {
  for (const CatalogueEntry& one : BuiltCatalogue().Entries()) {
    SCOPED_TRACE(one.descriptor->identifier);
    const Entry* entry = FindEntry(one.descriptor->identifier);
    ASSERT_NE(entry, nullptr);
    for (const std::string& line : LinesOf(PlainText(entry->markdown, 100))) {
      EXPECT_FALSE(line.ends_with(' ')) << line;
      EXPECT_EQ(line.find("**"), line.find("***Empty***")) << line;
      EXPECT_EQ(line.find("]("), std::string::npos) << line;
    }
  }
}

TEST(Reference, FindsWhatHasAllWordsBestFirst) {
  EXPECT_EQ(Search(BuiltCatalogue(), {}).size(), BuiltCatalogue().Entries().size());
  const auto names = [&](const std::vector<std::string>& words) {
    std::vector<std::string> found;
    for (const CatalogueEntry* one : Search(BuiltCatalogue(), words)) {
      found.emplace_back(one->descriptor->name);
    }
    return found;
  };
  const std::vector<std::string> circles = names({"CIRCLE"});
  EXPECT_EQ(circles.at(0), "Circle");  // the name
  EXPECT_EQ(names({"_nuv_numeric_dividenumbers_"}), std::vector<std::string>{"Divide"});
  EXPECT_EQ(names({"outliers", "ovality"}),  // parameters
            (std::vector<std::string>{"PtsToBestCircle", "PtsToBestCircleInf"}));
  // Each word narrows what is found.
  for (const std::string& name : names({"circle", "point"})) {
    EXPECT_NE(std::ranges::find(circles, name), circles.end()) << name;
  }
}

/// What a wrong name is answered with.
std::string Complaint(const std::string& name) {
  try {
    BuiltCatalogue().Find(name);
  } catch (const UserError& error) {
    return error.what();
  }
  return "found";
}

TEST(Catalogue, AnswersNames) {
  // Where several share a name, each has another that finds it.
  for (const CatalogueEntry& one : BuiltCatalogue().Entries()) {
    const std::string name = one.descriptor->name;
    EXPECT_EQ(&BuiltCatalogue().Find(one.descriptor->category + (": " + name)), &one);
    if (Complaint(name) == "found") continue;
    EXPECT_NE(Complaint(name).find(
                  '"' + (one.descriptor->category + (": " + NameFromText(name.c_str()))) +
                  "\" or " + one.descriptor->identifier),
              std::string::npos);
  }
  EXPECT_EQ(Complaint("no such thing at all"), R"(no instruction "no such thing at all")");
}

}  // namespace
}  // namespace nuvhost

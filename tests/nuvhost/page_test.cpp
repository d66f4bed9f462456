#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "nuvhost/showing/charts.h"
#include "nuvhost/showing/joined_results.h"
#include "nuvhost/showing/page_statistics.h"
#include "nuvhost/showing/result_row.h"
#include "nuvhost/showing/step_graph.h"
#include "tests/instr/random_rounds.h"
#include "tests/instr/table.h"

namespace nuvhost {
namespace {

/// The numbers behind each place of a word in a text.
std::vector<double> NumbersBehind(const std::string& text, const std::string& word) {
  std::vector<double> numbers;
  for (std::size_t at = 0; (at = text.find(word, at)) != std::string::npos; at += word.size()) {
    numbers.push_back(std::strtod(text.c_str() + at + word.size(), nullptr));
  }
  return numbers;
}

TEST(Page, ChartsWhateverTheNumbersAre) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const double special[] = {0,         -0.0,      1,           std::nextafter(1, 2),
                            5e-324,    -1e-300,   1e300,       kLargest,
                            -kLargest, kInfinity, std::nan("")};
  std::mt19937 random(13);
  const auto pick = [&] { return special[random() % std::size(special)]; };
  const auto finite = [&] {
    for (;;) {
      const double number = pick();
      if (std::isfinite(number)) return number;
    }
  };
  for (int round = 0; round < 3000; ++round) {
    PageData page;
    Limits limits;
    if (round % 3 != 0) limits.least = finite();
    if (round % 3 != 1) limits.most = finite();
    if (limits.least && limits.most && *limits.least > *limits.most) {
      std::swap(*limits.least, *limits.most);
    }
    page.characteristics.push_back({"width", "mm", std::nullopt, limits});
    page.parts.resize(round % 50 == 0 ? 700 : random() % 12);
    std::size_t numbers = 0;
    for (PartResult& part : page.parts) {
      const double value = random() % 2 == 0 ? pick()
                           : page.parts.front().values.empty()
                               ? finite()
                               : *page.parts.front().values[0].number;
      CNuvObject object;
      object = value;
      part.values.push_back({value, Hold(limits, object)});
      numbers += std::isfinite(value) ? 1 : 0;
    }
    Summarise(page, BuiltCatalogue());
    const std::string chart = Chart(page, 0);
    ASSERT_EQ(chart.empty(), numbers == 0);
    ASSERT_EQ(page.statistics[0].count, numbers);
    for (const char* word : {"nan", "inf"}) ASSERT_EQ(chart.find(word), std::string::npos) << chart;
    for (const double x : NumbersBehind(chart, "M")) ASSERT_TRUE(0 <= x && x <= 1000) << chart;
    for (const double y : NumbersBehind(chart, "V")) ASSERT_TRUE(0 <= y && y <= 1000) << chart;
    for (const double part : NumbersBehind(chart, "bottom:")) {
      ASSERT_TRUE(0 <= part && part <= 100) << chart;
    }
    ASSERT_LT(NumbersBehind(chart, "bottom:").size(), 20U) << chart;
  }
}

TEST(Page, ReadsWhatAColumnIsNamed) {
  std::mt19937_64 random(19);
  const char* const words[] = {"Width",     "",      " ",  " [",        "]",   " (2)",
                               "1 to 2",    "yes",   "no", "at most 3", " mm", " []",
                               "at least ", "5 to ", "\n", "\u00B5m",   ","};
  const auto text = [&] {
    std::string made;
    for (std::size_t i = random() % 5; i > 0; --i) made += words[random() % std::size(words)];
    return made;
  };
  const auto number = [&] {
    double made = AnyNumber(random);
    while (!std::isfinite(made)) made = AnyNumber(random);
    return random() % 2 == 0 ? made : static_cast<double>(random() % 9);
  };
  int without_unit = 0;
  for (int round = 0; round < 20000; ++round) {
    Characteristic row{text(), text(), std::nullopt, {}};
    switch (random() % 5) {
      case 0: row.limits.expected = random() % 2 == 0; break;
      case 1: row.limits.least = number(); break;
      case 2: row.limits.most = number(); break;
      case 3:
        row.limits.least = number();
        row.limits.most = number();
        break;
      default: break;  // no limits
    }
    const std::string column = ResultColumn(row);
    for (const std::string& name : {column, column + " (2)", column + " (13)"}) {
      const auto read = CharacteristicOf(name);
      ASSERT_EQ(read.has_value(), row.limits.Judge()) << name;
      if (!read) continue;
      ASSERT_EQ(read->label, row.label) << name;
      ASSERT_EQ(read->limits, row.limits) << name;
      if (read->unit == row.unit) continue;
      ASSERT_EQ(read->unit, "") << name;
      ASSERT_NE(row.unit.find('['), std::string::npos) << name;  // no other unit is left out
      ++without_unit;
    }
  }
  ASSERT_GT(without_unit, 0);
}

TEST(Page, ListsAHundredPartsThatAreNotGood) {
  for (const std::size_t bad : {0, 1, 100, 101, 250}) {
    PageData page;
    page.parts.resize(300);
    for (std::size_t i = 0; i < bad; ++i) page.parts[i].state = RunOutcome::State::kFailed;
    const std::string text = JoinedText(page);
    const std::string rest = "not shown: " + std::to_string(bad - 100) + " others";
    std::size_t listed = 0;
    for (std::size_t at = 0; (at = text.find("failed", at)) != std::string::npos; ++at) ++listed;
    EXPECT_EQ(listed, std::min<std::size_t>(bad, 100));
    EXPECT_EQ(text.find("not shown") != std::string::npos, bad > 100) << text;
    EXPECT_EQ(text.find(rest) != std::string::npos, bad > 100) << text;
  }
}

TEST(Page, DrawsStepsBehindAllThatTheyTakeSomethingFrom) {
  std::mt19937 random(17);
  for (int round = 0; round < 200; ++round) {
    std::vector<GraphNode> nodes(1 + random() % 30);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      nodes[i].name = "node " + std::to_string(i);
      for (std::size_t from = 0; from < i; ++from) {
        if (random() % 6 == 0) nodes[i].from.push_back(from);
      }
    }
    const std::string svg = DrawGraph(nodes);
    EXPECT_EQ(svg, DrawGraph(nodes));
    struct Drawn {
      double x = -1;
      double y = -1;
    };
    std::vector<Drawn> drawn(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      const std::string title = "<title>" + nodes[i].name + " ";
      const std::size_t at = svg.find("<rect", svg.find(title));
      ASSERT_EQ(std::sscanf(svg.c_str() + at, R"(<rect x="%lf" y="%lf")", &drawn[i].x, &drawn[i].y),
                2);
    }
    const double width = NumbersBehind(svg, "width=\"").front();
    const double height = NumbersBehind(svg, "height=\"").front();
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      ASSERT_TRUE(drawn[i].x >= 0 && drawn[i].x + 168 <= width && drawn[i].y >= 0 &&
                  drawn[i].y + 46 <= height);
      for (const std::size_t from : nodes[i].from) ASSERT_LT(drawn[from].x + 168, drawn[i].x);
      for (std::size_t j = 0; j < i; ++j) {
        ASSERT_TRUE(std::abs(drawn[i].x - drawn[j].x) > 168 ||
                    std::abs(drawn[i].y - drawn[j].y) > 46);
      }
    }
  }
}

}  // namespace
}  // namespace nuvhost

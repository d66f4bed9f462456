#include "nuvhost/showing/html_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "nuvhost/drawing/svg_writer.h"
#include "nuvhost/showing/charts.h"
#include "nuvhost/showing/html_text.h"
#include "nuvhost/showing/page_texts.h"
#include "nuvhost/values/value_text.h"

namespace nuvhost {
namespace {

using State = RunOutcome::State;

constexpr std::array kStates{State::kGood, State::kBad, State::kFailed, State::kUnreadable,
                             State::kSucceeded};
constexpr std::size_t kOpenCards = 6;  // the others of the parts that are not good are folded away
constexpr const char* kNothing = "\u2013";

/// "1 part", "2 parts".
std::string Count(std::size_t count, const char* what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

/// The part of a whole in percent, never rounded up: a yield of 100 has no bad part.
std::string PercentText(std::size_t count, std::size_t of) {
  const std::size_t tenths = of == 0 ? 0 : count * 1000 / of;
  return fmt::format("{}.{} %", tenths / 10, tenths % 10);
}

std::string Name(std::string_view text) {
  return "<bdi>" + HtmlText(text) + "</bdi>";
}

std::string Badge(State state) {
  return fmt::format("<span class=\"badge {0}\">{0}</span>", StateText(state));
}

std::string Section(const char* id, const char* heading, const std::string& contents) {
  return fmt::format(
      "<section id=\"{0}\" aria-labelledby=\"{0}-heading\">\n"
      "<h2 id=\"{0}-heading\">{1}</h2>\n{2}</section>\n",
      id, heading, contents);
}

std::string WithUnit(const std::string& number, const Characteristic& characteristic) {
  return characteristic.unit.empty() ? number : number + "\u00A0" + HtmlText(characteristic.unit);
}

std::string Shown(const PartValue& value, const Characteristic& characteristic) {
  if (!value.number) return "no value";
  if (characteristic.limits.expected) return *value.number != 0 ? "yes" : "no";
  return WithUnit(NumberText(*value.number, characteristic.decimals), characteristic);
}

class Page {
 public:
  explicit Page(const PageData& data) : data_(data) {
    for (const PartResult& part : data.parts) {
      ++counts_[static_cast<std::size_t>(part.state)];
      if (PageData::IsNotGood(part)) not_good_.push_back(&part);
    }
  }

  std::string Html() const {
    const std::string title = data_.title.empty() ? data_.program : data_.title;
    std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
    html += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n";
    html +=
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
        "style-src 'unsafe-inline'; script-src 'unsafe-inline'; img-src data:\">\n";
    html += "<title>" + HtmlText(title) + "</title>\n<style>\n";
    (html += kPageStyle) += "</style>\n</head>\n<body>\n";
    html += SharedElements() + Head(title) + "<main>\n" + NotGoodParts() + Characteristics() +
            AllParts();
    html += Program();
    html += "</main>\n<dialog id=\"enlarged\" aria-label=\"Picture\"></dialog>\n";
    html +=
        "<script type=\"application/json\" id=\"data\">" + ScriptText(TableData()) + "</script>\n";
    ((html += "<script>\n") += kPageScript) += "</script>\n</body>\n</html>\n";
    return html;
  }

 private:
  std::size_t Counted(State state) const { return counts_[static_cast<std::size_t>(state)]; }
  bool Judges() const { return !data_.characteristics.empty(); }

  /// Images, and the filters of texts with a background, where every picture finds them.
  std::string SharedElements() const {
    std::string html = "<svg width=\"0\" height=\"0\" class=\"shared\" aria-hidden=\"true\"><defs>";
    for (const std::string& element : data_.shared) html += element;
    return html + "</defs></svg>\n";
  }

  std::string Head(const std::string& title) const {
    const std::size_t parts = data_.parts.size();
    std::string html = "<header>\n<p class=\"kicker\">Inspection report</p>\n<h1>" + Name(title) +
                       "</h1>\n<p class=\"sub\">" + Count(parts, "part") +
                       (data_.program.empty() ? "" : " \u00B7 " + Name(data_.program)) + "</p>\n";
    html += Verdict();
    html += "<div class=\"share\" aria-hidden=\"true\">";
    for (const State state : kStates) {
      if (Counted(state) == 0) continue;
      html += fmt::format("<i class=\"{}\" style=\"flex-grow:{}\"></i>", StateText(state),
                          Counted(state));
    }
    html += "</div>\n<ul class=\"counts\">\n";
    for (const State state : kStates) {
      if (Counted(state) == 0) continue;
      html += fmt::format("<li><i class=\"{0}\"></i><b>{1}</b> {0}</li>\n", StateText(state),
                          Counted(state));
    }
    html += "</ul>\n<nav aria-label=\"Sections\">\n";
    if (!not_good_.empty()) html += "<a href=\"#not-good\">Not good</a>\n";
    if (!data_.characteristics.empty())
      html += "<a href=\"#characteristics\">Characteristics</a>\n";
    html += "<a href=\"#parts\">All parts</a>\n";
    if (!data_.graph.empty()) html += "<a href=\"#program\">Program</a>\n";
    return html + "</nav>\n</header>\n";
  }

  std::string Verdict() const {
    const std::size_t parts = data_.parts.size();
    const std::size_t good = Counted(State::kGood);
    const char* kind = not_good_.empty() ? "good" : "bad";
    if (!Judges()) {
      return "<p class=\"verdict\"><b>" + Count(parts, "part") +
             "</b> <span>measured, without limits to judge by</span></p>\n";
    }
    if (parts == 1) {
      const State state = data_.parts[0].state;
      const char* text = state == State::kGood  ? "The part is good"
                         : state == State::kBad ? "The part is bad"
                                                : "The part could not be judged";
      return fmt::format("<p class=\"verdict {}\"><b>{}</b></p>\n", kind, text);
    }
    return fmt::format(
        "<p class=\"verdict {}\"><b>{}</b> <span>yield: {} of {} parts are good</span></p>\n", kind,
        PercentText(good, parts), good, parts);
  }

  std::string NotGoodParts() const {
    if (not_good_.empty()) return "";
    const std::size_t shown = std::min(not_good_.size(), kMostPictures);
    std::string html = WhereTheyFail();
    if (shown < not_good_.size()) {
      html += fmt::format(
          "<p class=\"note\">The first {} of {} are shown here; all of them are "
          "under <a href=\"#parts\">All parts</a>.</p>\n",
          shown, not_good_.size());
    }
    html += "<div class=\"cards\">\n";
    for (std::size_t i = 0; i < shown; ++i) {
      if (i == kOpenCards) {
        html +=
            fmt::format("</div>\n<details>\n<summary>{} more</summary>\n<div class=\"cards\">\n",
                        shown - kOpenCards);
      }
      html += Card(*not_good_[i]);
    }
    html += shown > kOpenCards ? "</div>\n</details>\n" : "</div>\n";
    return Section("not-good", "Parts that are not good", html);
  }

  /// The characteristics by how many parts are bad in each, most first.
  std::string WhereTheyFail() const {
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < data_.statistics.size(); ++i) {
      if (data_.statistics[i].bad > 0) order.push_back(i);
    }
    if (order.empty() || data_.parts.size() == 1) return "";
    std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
      return data_.statistics[a].bad > data_.statistics[b].bad;
    });
    const std::size_t most = data_.statistics[order[0]].bad;
    std::string html = "<ol class=\"pareto\" aria-label=\"Where parts are bad\">\n";
    for (const std::size_t i : order) {
      html += fmt::format(
          "<li><a href=\"#row-{}\">{}</a><span><i "
          "style=\"width:{:.1f}%\"></i></span><b>{}</b></li>\n",
          i, Name(data_.characteristics[i].label),
          100.0 * static_cast<double>(data_.statistics[i].bad) / static_cast<double>(most),
          data_.statistics[i].bad);
    }
    return html + "</ol>\n";
  }

  std::string Card(const PartResult& part) const {
    std::string html =
        "<article class=\"part\">\n<h3>" + Name(part.name) + " " + Badge(part.state) + "</h3>\n";
    if (!part.picture.empty()) {
      html += "<button type=\"button\" class=\"picture\" aria-label=\"Enlarge the picture of " +
              HtmlText(part.name) + "\">" + part.picture + "</button>\n";
    }
    std::string rows;
    for (std::size_t i = 0; i < part.values.size(); ++i) {
      const PartValue& value = part.values[i];
      if (value.holds) continue;
      const Characteristic& row = data_.characteristics[i];
      rows += "<tr><th scope=\"row\">" + Name(row.label) + "</th><td>" + Shown(value, row) +
              "</td><td>" + HtmlText(LimitsText(row.limits)) + "</td></tr>\n";
    }
    if (!rows.empty()) {
      html +=
          "<table class=\"rows\"><thead class=\"unseen\"><tr><th>Characteristic</th><th>Value</th>"
          "<th>Limits</th></tr></thead><tbody>\n" +
          rows + "</tbody></table>\n";
    }
    for (const std::string& error : part.errors)
      html += "<p class=\"error\">" + Name(error) + "</p>\n";
    return html + "</article>\n";
  }

  std::string Characteristics() const {
    std::string html;
    for (std::size_t i = 0; i < data_.characteristics.size(); ++i) html += CharacteristicCard(i);
    return html.empty() ? "" : Section("characteristics", "Characteristics", html);
  }

  std::string CharacteristicCard(std::size_t index) const {
    const Characteristic& row = data_.characteristics[index];
    const Statistics& statistics = data_.statistics[index];
    const std::string limits = LimitsText(row.limits);
    std::string html = fmt::format(
        "<article class=\"characteristic\" id=\"row-{}\">\n<h3>{}</h3>\n<p "
        "class=\"asked\">{}</p>\n",
        index, Name(row.label),
        row.limits.expected ? "expected: " + limits : WithUnit(HtmlText(limits), row));
    html += statistics.bad == 0 ? "<p class=\"outside none\">none bad</p>\n"
                                : fmt::format("<p class=\"outside\">{} bad</p>\n", statistics.bad);
    html += Chart(data_, index);
    if (row.limits.expected) return html + "</article>\n";
    const std::optional<int> finer = row.decimals ? std::optional(*row.decimals + 1) : std::nullopt;
    const auto item = [&](const char* name, const std::optional<double>& number,
                          std::optional<int> decimals) {
      return fmt::format("<div><dt>{}</dt><dd{}>{}</dd></div>\n", name,
                         number ? " data-value=\"" + NumberText(*number) + '"' : "",
                         number ? ShortNumber(*number, decimals) : kNothing);
    };
    html += "<dl>\n" + item("n", static_cast<double>(statistics.count), 0) +
            item("Mean", statistics.mean, finer) + item("Std deviation", statistics.deviation, {}) +
            item("Min", statistics.least, row.decimals) +
            item("Max", statistics.most, row.decimals) + item("Cp", statistics.cp, 2) +
            item("Cpk", statistics.cpk, 2) + "</dl>\n";
    return html + "</article>\n";
  }

  std::string Program() const {
    if (data_.graph.empty()) return "";
    return Section("program", "Program",
                   "<p class=\"note\">What flows from data and steps to other steps; steps with a "
                   "blue edge are judged.</p>\n<div class=\"scroll\" tabindex=\"0\">\n" +
                       DrawGraph(data_.graph) + "</div>\n");
  }

  static std::string AllParts() {
    return Section(
        "parts", "All parts",
        "<noscript><p class=\"note\">This table needs the page's script, which the "
        "browser does not run.</p></noscript>\n"
        "<div class=\"tools\" hidden>\n<label>Show <select id=\"filter\"></select></label>\n"
        "<label>Find <input id=\"find\" type=\"search\" autocomplete=\"off\"></label>\n"
        "<span class=\"pages\"><button type=\"button\" id=\"back\">Back</button> "
        "<output id=\"range\"></output> <button type=\"button\" id=\"next\">Next</button></span>\n"
        "</div>\n<div class=\"scroll\" tabindex=\"0\"><table id=\"table\"></table></div>\n");
  }

  /// What the script builds the table from: rows as [label, unit, decimals, is yes or no], parts as
  /// [name, state, values, numbers of the rows that do not hold, errors].
  Json TableData() const {
    Json rows = Json::array();
    for (const Characteristic& row : data_.characteristics) {
      rows.push_back({XmlText(row.label), XmlText(row.unit),
                      row.decimals ? Json(*row.decimals) : Json(),
                      row.limits.expected.has_value()});
    }
    Json parts = Json::array();
    for (const PartResult& part : data_.parts) {
      Json values = Json::array();
      Json bad = Json::array();
      for (std::size_t i = 0; i < part.values.size(); ++i) {
        const PartValue& value = part.values[i];
        values.push_back(value.number ? NumberToJson(*value.number) : Json());
        if (!value.holds) bad.push_back(i);
      }
      Json errors = Json::array();
      for (const std::string& error : part.errors) errors.push_back(XmlText(error));
      parts.push_back({XmlText(part.name), StateText(part.state), std::move(values), std::move(bad),
                       std::move(errors)});
    }
    return {{"rows", std::move(rows)}, {"parts", std::move(parts)}};
  }

  const PageData& data_;
  std::array<std::size_t, kStates.size()> counts_{};
  std::vector<const PartResult*> not_good_;
};

}  // namespace

std::string ReportPage(const PageData& page) {
  return Page(page).Html();
}

}  // namespace nuvhost

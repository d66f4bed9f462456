#include "nuvhost/showing/charts.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "nuvhost/showing/html_text.h"
#include "nuvhost/values/value_text.h"

namespace nuvhost {
namespace {

constexpr double kSide = 1000;          // of the paths' own coordinates, each way
constexpr std::size_t kMostDots = 600;  // beyond them, groups
constexpr double kFarOff = 1;  // of the core's width, beyond which values are drawn at the end

/// Part numbers and finite values.
struct Sample {
  std::size_t part;
  double value;
  bool holds;
};

/// The step of a scale: 1, 2 or 5 times a power of ten near the number, with the decimals it needs.
struct Step {
  double size;
  int decimals;
};
Step NiceStep(double wanted) {
  char text[32];
  const auto [end, error] =
      std::to_chars(std::begin(text), std::end(text), wanted, std::chars_format::scientific, 0);
  int exponent = 0;
  std::from_chars(text[2] == '+' ? text + 3 : text + 2, end, exponent);
  const char digit = text[0] == '1' ? '1' : text[0] <= '3' ? '2' : '5';
  const std::string rounded = fmt::format("{}e{}", digit, exponent);
  Step step{0, std::max(0, -exponent)};
  std::from_chars(rounded.data(), rounded.data() + rounded.size(), step.size);
  return step;
}

/// The values that the chart spans.
class Scale {
 public:
  Scale(const std::vector<Sample>& samples, const Limits& limits) {
    std::vector<double> sorted;
    for (const Sample& sample : samples) sorted.push_back(sample.value);
    std::ranges::sort(sorted);
    double low = sorted[sorted.size() / 4];
    double high = sorted[sorted.size() - 1 - sorted.size() / 4];
    if (limits.least) low = std::min(low, *limits.least);
    if (limits.most) high = std::max(high, *limits.most);
    if (limits.least) high = std::max(high, *limits.least);
    if (limits.most) low = std::min(low, *limits.most);
    const double core = high - low;
    low_ = std::max(sorted.front(), low - kFarOff * core);
    high_ = std::min(sorted.back(), high + kFarOff * core);
    if (core == 0) {
      low_ = sorted.front();
      high_ = sorted.back();
    }
    constexpr double kLargest = 1e308;
    low_ = std::clamp(std::min(low, low_), -kLargest, kLargest);
    high_ = std::clamp(std::max(high, high_), -kLargest, kLargest);
    double margin = 0.08 * (high_ - low_);
    if (margin == 0) margin = std::max(1e-3 * std::abs(low_), 1e-300);
    low_ = std::max(low_ - margin, -kLargest);
    high_ = std::min(high_ + margin, kLargest);
  }

  double Low() const { return low_; }
  double High() const { return high_; }
  /// 0 at the lower end, 1 at the upper one; values beyond are drawn there.
  double At(double value) const {
    return std::clamp((value / 2 - low_ / 2) / (high_ / 2 - low_ / 2), 0.0, 1.0);
  }
  bool Holds(double value) const { return low_ <= value && value <= high_; }
  /// In the coordinates of paths, downward.
  double Y(double value) const { return kSide * (1 - At(value)); }

 private:
  double low_;
  double high_;
};

std::string Percent(double part) {
  return fmt::format("{:.2f}%", 100 * part);
}

std::string SvgOf(const std::string& paths) {
  return fmt::format(
      "<svg viewBox=\"0 0 {0} {0}\" preserveAspectRatio=\"none\" aria-hidden=\"true\">{1}</svg>",
      kSide, paths);
}

std::string Path(const char* kind, const std::string& d) {
  return d.empty() ? "" : fmt::format("<path class=\"{}\" d=\"{}\"/>", kind, d);
}

std::string Across(double y) {
  return fmt::format("M0 {:.1f}h{}", y, kSide);
}

std::string LimitPaths(const Scale& scale, const Limits& limits) {
  std::string d;
  if (limits.least) d += Across(scale.Y(*limits.least));
  if (limits.most) d += Across(scale.Y(*limits.most));
  return Path("limit", d);
}

std::string Dot(double x, double y) {
  return fmt::format("M{:.1f} {:.1f}h0", x, y);
}

std::string RunPaths(const std::vector<Sample>& samples, std::size_t parts, const Scale& scale) {
  const auto x = [&](const Sample& sample) {
    return kSide * (static_cast<double>(sample.part) + 0.5) / static_cast<double>(parts);
  };
  std::string line;
  std::string dots;
  std::string bad;
  if (parts <= kMostDots) {
    std::size_t expected = parts;
    for (const Sample& sample : samples) {
      line += fmt::format("{}{:.1f} {:.1f}", sample.part == expected ? 'L' : 'M', x(sample),
                          scale.Y(sample.value));
      expected = sample.part + 1;
      if (sample.holds) dots += Dot(x(sample), scale.Y(sample.value));
    }
  } else {
    for (auto begin = samples.begin(); begin != samples.end();) {
      const std::size_t group = begin->part * kMostDots / parts;
      const auto end = std::find_if(begin, samples.end(), [&](const Sample& sample) {
        return sample.part * kMostDots / parts != group;
      });
      const auto [least, most] = std::minmax_element(
          begin, end, [](const Sample& a, const Sample& b) { return a.value < b.value; });
      const double top = scale.Y(most->value);
      line += fmt::format("M{:.1f} {:.1f}v{:.1f}", x(*begin), top, scale.Y(least->value) - top);
      begin = end;
    }
  }
  std::string last;
  for (const Sample& sample : samples) {
    if (sample.holds) continue;
    std::string dot = Dot(x(sample), scale.Y(sample.value));
    if (dot != last) bad += dot;
    last = std::move(dot);
  }
  return Path(parts <= kMostDots ? "line" : "range", line) + Path("dots", dots) + Path("bad", bad);
}

/// Bars between the limits, so many that they tell something, and as wide ones beyond them.
std::string HistogramPaths(const std::vector<Sample>& samples, const Scale& scale,
                           const Limits& limits) {
  const double span = scale.High() - scale.Low();
  const double anchor =
      std::clamp(limits.least ? *limits.least : *limits.most, scale.Low(), scale.High());
  const bool has_both = limits.least && limits.most && *limits.most > *limits.least;
  const double bars =
      std::clamp(std::floor(std::sqrt(static_cast<double>(samples.size()))), 6.0, 20.0);
  const double width = has_both ? (*limits.most - *limits.least) / bars : span / (2 * bars);
  if (!std::isfinite(span) || !std::isfinite(width) || !(width > 0) || span / width > 1000)
    return "";
  const auto bar_of = [&](double value) {
    const double within = std::clamp(value, scale.Low(), scale.High());
    const bool is_top = limits.most && value == *limits.most && has_both;
    return static_cast<int>(std::floor((within - anchor) / width)) - (is_top ? 1 : 0);
  };
  const int first = bar_of(scale.Low());
  std::vector<std::size_t> good(static_cast<std::size_t>(bar_of(scale.High()) - first) + 2);
  std::vector<std::size_t> bad(good.size());
  for (const Sample& sample : samples) {
    ++(sample.holds ? good
                    : bad)[static_cast<std::size_t>(std::max(0, bar_of(sample.value) - first))];
  }
  std::size_t most = 1;
  for (std::size_t i = 0; i < good.size(); ++i) most = std::max(most, good[i] + bad[i]);
  const auto draw = [&](const std::vector<std::size_t>& counts,
                        const std::vector<std::size_t>* below) {
    std::string d;
    for (std::size_t i = 0; i < counts.size(); ++i) {
      if (counts[i] == 0) continue;
      const double from = anchor + (first + static_cast<double>(i)) * width;
      const double top = scale.Y(from + 0.94 * width);
      const double scale_x = 0.96 * kSide / static_cast<double>(most);
      const double left = below == nullptr ? 0 : scale_x * static_cast<double>((*below)[i]);
      const double length = scale_x * static_cast<double>(counts[i]);
      d += fmt::format("M{:.1f} {:.1f}h{:.1f}V{:.1f}h-{:.1f}Z", left, top, length,
                       scale.Y(from + 0.06 * width), length);
    }
    return d;
  };
  return Path("bar", draw(good, nullptr)) + Path("bar out", draw(bad, &good));
}

/// The numbers beside the scale.
std::string Ticks(const Scale& scale) {
  constexpr double kTicks = 5;
  const double span = scale.High() - scale.Low();
  if (!std::isfinite(span)) return "";
  const Step step = NiceStep(span / kTicks);
  const double first = std::ceil(scale.Low() / step.size);
  if (!(step.size > 0) || !(std::abs(first) < 1e15)) return "";
  const bool is_plain =
      step.decimals <= 8 && std::abs(scale.High()) < 1e9 && std::abs(scale.Low()) < 1e9;
  std::string text;
  for (int i = 0; first + i <= std::floor(scale.High() / step.size); ++i) {
    const double value = (first + i) * step.size;
    text += fmt::format("<span style=\"bottom:{}\">{}</span>", Percent(scale.At(value)),
                        is_plain ? NumberText(value, step.decimals) : ShortNumber(value, {}));
  }
  return text;
}

std::string LimitLabels(const Scale& scale, const Characteristic& characteristic) {
  const auto label = [&](const char* name, const std::optional<double>& limit) {
    return limit ? fmt::format("<span style=\"bottom:{}\"><i>{}</i> {}</span>",
                               Percent(scale.At(*limit)), name, ShortNumber(*limit, {}))
                 : std::string();
  };
  return label("max", characteristic.limits.most) + label("min", characteristic.limits.least);
}

}  // namespace

std::string ShortNumber(double number, std::optional<int> decimals) {
  if (decimals || !std::isfinite(number)) return NumberText(number, decimals);
  char text[64];
  const auto [end, error] =
      std::to_chars(std::begin(text), std::end(text), number, std::chars_format::general, 6);
  return {std::begin(text), end};
}

std::string Chart(const PageData& page, std::size_t characteristic) {
  const Characteristic& shown = page.characteristics[characteristic];
  std::vector<Sample> samples;
  for (std::size_t i = 0; i < page.parts.size(); ++i) {
    const PartValue& value = page.parts[i].values[characteristic];
    if (value.number && std::isfinite(*value.number)) {
      samples.push_back({i, *value.number, value.holds});
    }
  }
  if (samples.empty() || shown.limits.expected) return "";
  const Scale scale(samples, shown.limits);
  const auto beyond = std::ranges::count_if(
      samples, [&](const Sample& sample) { return !scale.Holds(sample.value); });
  const Statistics& statistics = page.statistics[characteristic];
  const std::string limits = LimitPaths(scale, shown.limits);
  const std::string mean =
      statistics.mean ? Path("mean", Across(scale.Y(*statistics.mean))) : std::string();
  std::string html = fmt::format(
      "<div class=\"plot\" tabindex=\"0\" role=\"img\" data-row=\"{}\" aria-label=\"Run chart and "
      "histogram of {}: {} values, {} outside the limits\">\n",
      characteristic, HtmlText(shown.label), samples.size(), statistics.bad);
  html += "<div class=\"ticks\">" + Ticks(scale) + "</div>\n";
  html += "<div class=\"run\">" +
          SvgOf(limits + mean + RunPaths(samples, page.parts.size(), scale)) +
          "<div class=\"cursor\" hidden></div></div>\n";
  html += "<div class=\"spread\">" + SvgOf(HistogramPaths(samples, scale, shown.limits) + limits) +
          "</div>\n";
  html += "<div class=\"limits\">" + LimitLabels(scale, shown) + "</div>\n";
  html += fmt::format("<div class=\"parts\"><span>1</span><span>part</span><span>{}</span></div>\n",
                      page.parts.size());
  html += "</div>\n<p class=\"readout\" aria-live=\"polite\">";
  if (beyond > 0) {
    html += fmt::format("{} {} far off and drawn at the end of the scale.", beyond,
                        beyond == 1 ? "value is" : "values are");
  }
  return html + "</p>\n";
}

}  // namespace nuvhost

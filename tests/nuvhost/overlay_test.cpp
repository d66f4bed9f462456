#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "nuvhost/drawing/image.h"
#include "nuvhost/drawing/label_placer.h"
#include "nuvhost/drawing/svg_picture.h"
#include "nuvhost/drawing/text_layout.h"

namespace nuvhost {
namespace {

/// A PNG up to its end mark; a JPEG likewise.
std::string Png(const std::string& size) {
  return "\x89PNG\r\n\x1A\n" + std::string("\0\0\0\x0DIHDR", 8) + size +
         std::string("\x08\0\0\0\0crc_\0\0\0\0IENDcrc_", 21);
}
std::string Jpeg(const std::string& segments) {
  return "\xFF\xD8" + segments + "\xFF\xD9";
}

Image Sized(std::uint32_t width, std::uint32_t height) {
  return {"", "image/png", width, height};
}

std::string Svg(const std::vector<Annotation>& annotations,
                const std::optional<Image>& image = std::nullopt, std::uint32_t color = 0) {
  Annotations drawing;
  for (const Annotation& annotation : annotations) drawing.push_back(&annotation);
  const SvgPicture picture = DrawSvg(drawing, image, color);
  EXPECT_EQ(picture.left_out, 0U) << picture.svg;
  return picture.svg;
}

CNuvPointVector Points(std::initializer_list<CNuvPoint> list) {
  CNuvPointVector points;
  for (const CNuvPoint& point : list) points.PushBack(point);
  return points;
}

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(Image, IsReadFromItsHeader) {
  using namespace std::string_literals;
  const std::string app = "\xFF\xE0\0\x04JF"s;
  const std::string frame = "\xFF\xFF\xC2\0\x08\x08\0\x03\x01\x02\0"s;
  const std::string huffman = "\xFF\xC4\0\x02"s;
  const std::string png = Png("\0\0\x02\0\0\0\0\x07"s);
  struct Row {
    std::string bytes;
    std::uint32_t width;
    std::uint32_t height;
    const char* reason;  ///< "" where the image is read
  };
  const Row rows[] = {
      {png, 512, 7, ""},
      {png + "behind the end", 512, 7, ""},
      {Jpeg(app + huffman + frame), 258, 3, ""},
      {Jpeg("\xFF\x01"s + frame + "\xFF\xDApixels"), 258, 3, ""},
      {"", 0, 0, "empty"},
      {"GIF89a", 0, 0, "neither PNG nor JPEG"},
      {png.substr(0, 7), 0, 0, "neither PNG nor JPEG"},
      {Png("\0\0\0\0\0\0\0\x07"s), 0, 0, "no size"},
      {Png("\xFF\0\0\0\0\0\0\x07"s), 0, 0, "no size"},
      {"\x89PNG\r\n\x1A\n\xFF\xFF\xFF\xFFIHDR12345678", 0, 0, "too early"},
      {"\x89PNG\r\n\x1A\n\0\0\0\0IENDcrc_"s, 0, 0, "begin with a header"},
      {Jpeg(app), 0, 0, "no frame header"},
      {Jpeg("\xFF\xDA\0\x02"s + frame), 0, 0, "no frame header"},
      {Jpeg("\xFF\xC0\0\x07\x08\0\x03\x01\x02"s), 0, 0, "too short"},
      {Jpeg("\xFF\xE0\0\x01"s), 0, 0, "too short"},
      {Jpeg("JFIF"), 0, 0, "no marker"},
      {Jpeg("\xFF\xC0\0\x08\x08\0\0\x01\x02\0"s), 0, 0, "no size"},
      {"\xFF\xD8\xFF\xFF\xFF", 0, 0, "too early"},
  };
  for (const Row& row : rows) {
    std::string reason;
    const std::optional<Image> image = ReadImage(row.bytes, reason);
    EXPECT_EQ(image.has_value(), *row.reason == '\0') << reason;
    EXPECT_TRUE(Has(reason, row.reason)) << reason;
    EXPECT_EQ(image ? image->width : 0, row.width);
    EXPECT_EQ(image ? image->height : 0, row.height);
  }
  // However early a file ends, it is told.
  for (const std::string& whole : {png, Jpeg(app + huffman + frame)}) {
    for (std::size_t size = 0; size < whole.size(); ++size) {
      std::string reason;
      EXPECT_FALSE(ReadImage(whole.substr(0, size), reason)) << size;
      EXPECT_NE(reason, "");
    }
  }
  EXPECT_EQ(DataUri({"", "image/png", 1, 1}), "data:image/png;base64,");
  EXPECT_EQ(DataUri({"\xFF", "image/png", 1, 1}), "data:image/png;base64,/w==");
  EXPECT_EQ(DataUri({"ab", "image/png", 1, 1}), "data:image/png;base64,YWI=");
  EXPECT_EQ(DataUri({"abc\xFE\xFF\xBF", "image/jpeg", 1, 1}), "data:image/jpeg;base64,YWJj/v+/");
}

TEST(Picture, CutsLinesOffAtItsBorder) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> within(-1, 1);
  for (int round = 0; round < 20000; ++round) {
    const double scale = std::pow(10, 4 * within(random));
    const double left = scale * within(random);
    const double top = scale * within(random);
    const Box box{left, top, left + scale * std::abs(within(random)),
                  top + scale * std::abs(within(random))};
    CNuvLine line(7 * within(random), 2 * scale * within(random));
    if (round % 4 == 0) line.a = std::round(line.a) * std::acos(0.0);
    const double tolerance = 1e-12 * scale;
    const auto distance = [&](double x, double y) {
      return y * std::cos(line.a) - x * std::sin(line.a) - line.d;
    };
    const auto on_border = [&](const CNuvPoint& p) {
      const double inside =
          std::min({p.x - box.left, box.right - p.x, p.y - box.top, box.bottom - p.y});
      return std::abs(inside) <= tolerance;
    };
    // A line passes through a box if its corners lie on both sides.
    const double corners[] = {distance(box.left, box.top), distance(box.right, box.top),
                              distance(box.left, box.bottom), distance(box.right, box.bottom)};
    const auto [least, most] = std::ranges::minmax(corners);
    const std::optional<SegmentFigure> part = Clipped(line, box);
    if (std::abs(least) > tolerance && std::abs(most) > tolerance) {
      ASSERT_EQ(part.has_value(), least < 0 && most > 0) << line.a << ' ' << line.d;
    }
    if (!part) continue;
    for (const CNuvPoint& end : {part->start, part->end}) {
      ASSERT_TRUE(on_border(end)) << end.x << ' ' << end.y;
      ASSERT_NEAR(distance(end.x, end.y), 0, tolerance);
    }
  }
}

TEST(Overlay, DrawsEveryFigure) {
  struct Row {
    Annotation annotation;
    const char* drawn;
  };
  constexpr double kQuarter = 1.5707963267948966;
  const Row rows[] = {
      {{{}, 0, PointFigure{{10, 20}}}, R"(d="M6 20h8M10 16v8" stroke="#00c800")"},
      {{{}, 255, SegmentFigure{{1, 2}, {3.00049, -0.0}}}, R"(d="M1 2L3 0" stroke="#ff0000")"},
      {{{}, 0x12FF8040, LineFigure{CNuvLine(0, 50)}}, R"(d="M0 50L800 50" stroke="#4080ff")"},
      {{{}, 1, CircleFigure{CNuvCircle(5, 6, -7), true}},
       R"(<circle cx="5" cy="6" r="7" stroke="#010000" fill="#010000" fill-opacity="0.25"/>)"},
      {{{}, 1, CirclesFigure{Points({{1, 2}, {3, 4}}), 2.5, false}},
       R"(<circle cx="3" cy="4" r="2.5" stroke="#010000"/>)"},
      {{{}, 1, RectFigure{CNuvRect(100, 100, 40, 20, 0), true}},
       R"(d="M80 90L120 90L120 110L80 110Z" stroke="#010000" fill="#010000")"},
      {{{}, 1, RectFigure{CNuvRect(100, 100, 40, 20, kQuarter), false}},
       R"(d="M110 80L110 120L90 120L90 80Z")"},
      // Towards y from x: clockwise as seen.
      {{{}, 1, RectFigure{CNuvRect(0, 0, 200, 0, 0.1), false}}, R"(d="M-99.5 -9.983L99.5 9.983)"},
      {{{}, 1, PointsFigure{Points({{8, 8}, {20, 8}})}}, R"(d="M4 8h8M8 4v8M16 8h8M20 4v8")"},
      {{"A", 1, TextFigure{{10, 20}, "Courier New, 12pt", false}},
       R"(<text x="10" y="35.2" font-size="16" fill="#010000" font-family="&apos;Courier New&apos;, Arial, )"},
      {{"A", 1, TextFigure{{10, 20}, "serif", false}}, R"(font-family="serif")"},
      {{"A", 0xFFFFFF, TextFigure{{10, 20}, "15", true}},
       "<g filter=\"url(#on-black)\">\n"
       R"(<rect fill="none" x="6" y="20" width="8" height="24"/>)"},
      {{"A", 1, TextFigure{{10, 20}, "15", true}}, R"(<filter id="on-white" )"},
      {{{}, 1, PolylineFigure{Points({{1, 2}, {3, 4}, {5, 2}})}}, R"(d="M1 2L3 4L5 2")"},
      {{{}, 1, PixelsFigure{Points({{2, 3}, {-0.5, 7.9}})}},
       R"(d="M2 3h1v1h-1ZM-1 7h1v1h-1Z" fill="#010000" stroke="#010000")"},
  };
  for (const Row& row : rows) {
    const std::string svg = Svg({row.annotation}, Sized(800, 600));
    EXPECT_TRUE(Has(svg, row.drawn)) << row.drawn << '\n' << svg;
    EXPECT_TRUE(Has(svg, R"(width="800" height="600" viewBox="0 0 800 600")")) << svg;
  }
  EXPECT_TRUE(Has(Svg({{{}, 0, PointFigure{}}}, {}, 0x0000FF), R"(stroke="#ff0000")"));
}

TEST(Overlay, LabelsEveryFigureOnceAndWithinThePicture) {
  const CNuvPointVector points = Points({{-5, -5}, {99, 99}, {50, 300}});
  const decltype(Annotation::figure) figures[] = {
      PointFigure{{99, 1}},           SegmentFigure{{90, 0}, {99, 1}},
      LineFigure{CNuvLine(-0.7, 60)}, CircleFigure{CNuvCircle(50, 50, 400), false},
      CirclesFigure{points, 3, true}, RectFigure{CNuvRect(100, 0, 10, 10, 1), false},
      PointsFigure{points},           PolylineFigure{points},
      PixelsFigure{points},
  };
  const TextLayout layout = LayOutText("label", "", ViewOf(Sized(100, 100)));
  for (const auto& figure : figures) {
    for (const auto& none : {std::optional<std::string>(), std::optional<std::string>("")}) {
      EXPECT_FALSE(Has(Svg({{none, 0, figure}}, Sized(100, 100)), "<text"));
    }
    const std::string svg = Svg({{"label", 0, figure}}, Sized(100, 100));
    const std::size_t begin = svg.find("<text x=\"");
    ASSERT_NE(begin, std::string::npos) << svg;
    EXPECT_EQ(svg.find("<text", begin + 1), std::string::npos) << svg;
    double x = -1;
    double y = -1;
    ASSERT_EQ(std::sscanf(svg.c_str() + begin, "<text x=\"%lf\" y=\"%lf\"", &x, &y), 2);
    EXPECT_TRUE(x >= 0 && x + layout.Width() <= 100.001) << svg;
    EXPECT_TRUE(y - layout.size / 2 >= 0 && y <= 100) << svg;
  }
}

TEST(Overlay, SpansTheFigures) {
  const double above_100 = std::nextafter(100, 200);
  struct Row {
    std::vector<Annotation> annotations;
    Box box;
    double width;  ///< as shown
    double height;
  };
  const Row rows[] = {
      {{}, {0, 0, 640, 480}, 640, 480},
      {{{"", 0, TextFigure{{9999, 0}, "", true}}}, {0, 0, 640, 480}, 640, 480},
      {{{{}, 0, LineFigure{CNuvLine(0, 30)}}}, {-50, -20, 50, 80}, 800, 800},
      {{{{}, 0, LineFigure{CNuvLine(0, 30)}}, {{}, 0, CircleFigure{CNuvCircle(100, 0, -50), true}}},
       {40, -60, 160, 60},
       800,
       800},
      {{{{}, 0, PointFigure{{1e-6, 0}}}, {{}, 0, PointFigure{{3e-6, 0}}}},
       {8e-7, -2e-7, 3.2e-6, 2e-7},
       800,
       133},
      {{{{}, 0, CircleFigure{CNuvCircle(0, 0, 5e8), true}}}, {-6e8, -6e8, 6e8, 6e8}, 800, 800},
      // The text needs room beyond the margin, though not without end.
      {{{"W", 0, TextFigure{{0, 0}, "750px", true}}, {{}, 0, PointFigure{{-50, 0}}}},
       {-55, -5, 56.25, 67.5},
       1483,
       967},
      {{{std::string(99999, 'W'), 0, TextFigure{{0, 0}, "", true}}},
       {-50, -50, 1000, 50},
       8400,
       800},
      // Too close together for double precision.
      {{{{}, 0, PointFigure{{100, 0}}}, {{}, 0, PointFigure{{above_100, 0}}}},
       {100 - 1e-10, -1e-10, 100 + 1e-10, 1e-10},
       800,
       800},
      {{{{}, 0, PointFigure{{0, 0}}}, {{}, 0, PointFigure{{5e-324, 0}}}},
       {-1e-300, -1e-300, 1e-300, 1e-300},
       800,
       800},
  };
  for (const Row& row : rows) {
    Annotations drawing;
    for (const Annotation& annotation : row.annotations) drawing.push_back(&annotation);
    const View view = ViewAround(drawing);
    const double tolerance = 1e-3 * row.box.Width();
    EXPECT_NEAR(view.box.left, row.box.left, tolerance);
    EXPECT_NEAR(view.box.top, row.box.top, tolerance);
    EXPECT_NEAR(view.box.right, row.box.right, tolerance);
    EXPECT_NEAR(view.box.bottom, row.box.bottom, tolerance);
    const std::string svg = Svg(row.annotations);
    double width = 0;
    double height = 0;
    ASSERT_EQ(std::sscanf(svg.c_str() + svg.find("width="), R"(width="%lf" height="%lf")", &width,
                          &height),
              2);
    EXPECT_NEAR(width, row.width, 1);
    EXPECT_NEAR(height, row.height, 1);
    EXPECT_TRUE(Has(svg, "viewBox=\"0 0 "));
  }
}

// Random figures and labels that have room beside them.
TEST(Overlay, PlacesLabelsBesideAllElse) {
  std::mt19937 random(5);
  const auto below = [&](double limit) { return std::ldexp(random(), -32) * limit; };
  for (int round = 0; round < 200; ++round) {
    const double scale = std::ldexp(1.0, static_cast<int>(random() % 60) - 30);
    const View view{{-scale, 3 * scale, 799 * scale, 603 * scale}, scale};
    const auto point = [&] {
      const double y = below(600 * scale) + 3 * scale;  // drawn first, whatever the compiler
      return CNuvPoint(below(800 * scale) - scale, y);
    };
    LabelPlacer placer(view);
    std::vector<CNuvPoint> outlines;
    std::vector<CNuvPoint> anchors;
    for (int i = 0; i < 6; ++i) {
      const CNuvPoint a = point();
      const CNuvPoint b = point();
      const CNuvCircle circle(a.x, a.y, (i - 3) * below(i == 0 ? 1e5 : 40) * scale);
      placer.MarkSegment(a, b);
      placer.MarkCircle(circle);
      for (int step = 0; step <= 1000; ++step) {
        const double t = step / 1000.0;
        outlines.emplace_back(a.x + t * (b.x - a.x), a.y + t * (b.y - a.y));
        outlines.emplace_back(a.x + circle.radius * std::cos(7 * t),
                              a.y + circle.radius * std::sin(7 * t));
      }
      anchors.insert(anchors.end(), {a, b});
    }
    std::vector<Box> labels;
    for (const CNuvPoint& anchor : anchors) {
      const Box label = placer.Place(anchor, (20 + below(50)) * scale, 21.6 * scale);
      EXPECT_TRUE(label.left > view.box.left && label.right <= view.box.right &&
                  label.top > view.box.top && label.bottom <= view.box.bottom);
      for (const CNuvPoint& p : outlines) {
        ASSERT_FALSE(label.left < p.x && p.x < label.right && label.top < p.y && p.y < label.bottom)
            << round;
      }
      for (const Box& other : labels) {
        ASSERT_TRUE(label.right <= other.left || other.right <= label.left ||
                    label.bottom <= other.top || other.bottom <= label.top)
            << round;
      }
      labels.push_back(label);
    }
  }
}

}  // namespace
}  // namespace nuvhost

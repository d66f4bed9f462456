// Number arrays, beside the plain loops that give the same bits, OpenCV, and memcpy of as many
// bytes where memory is the limit.

#include <algorithm>
#include <cstring>

#include "bench/rows.h"
#include "tests/instr/plain_signals.h"
#ifdef FORMULA_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace bench {
namespace {

using Span = std::span<const double>;
const std::vector<std::size_t> kSizes = {1000, 100000, 1000000};

/// A plain loop from one or two arrays into numbers: the first result.
template <class Loop>
Peer Plain(Loop loop) {
  return Other("plain loop", [loop](const Inputs& in, Out& out) {
    const Span a = Numbers(in[0]);
    const Span b = in.size() > 1 ? Numbers(in[1]) : Span();
    out.numbers.resize(a.size());
    loop(a.data(), b.data(), out.numbers.data(), a.size());
  });
}

template <class Loop>
Peer PlainSum(Loop loop) {
  return Other("plain loop", [loop](const Inputs& in, Out& out) {
    out.numbers.resize(1);
    out.numbers[0] = loop(Numbers(in[0]));
  });
}

/// Copies the bytes of so many elements for each one of the first array: half of those moved.
Peer Memcpy(double elements = 1.0) {
  const auto count = [=](const Inputs& in) {
    return static_cast<std::size_t>(elements * static_cast<double>(Numbers(in[0]).size()));
  };
  return Other(
      "memcpy",
      [=](const Inputs& in, Out& out) {
        const std::size_t size = Numbers(in[0]).size();
        std::memcpy(out.copy.data(), Numbers(in[0]).data(), size * sizeof(double));
        if (count(in) > size) {
          std::memcpy(out.copy.data() + size, Numbers(in[1]).data(),
                      (count(in) - size) * sizeof(double));
        }
      },
      [=](const Inputs& in, Out& out) { out.copy.resize(count(in)); });
}

Inputs OneArray(Random& random, std::size_t n) {
  return List(UniformNumbers(random, n));
}
Inputs TwoArrays(Random& random, std::size_t n) {
  return List(UniformNumbers(random, n), UniformNumbers(random, n));
}

#ifdef FORMULA_WITH_OPENCV
cv::Mat Matrix(Span a) {
  return {1, static_cast<int>(a.size()), CV_64F, const_cast<double*>(a.data())};
}
cv::Mat Matrix(std::vector<float>& a) {
  return {1, static_cast<int>(a.size()), CV_32F, a.data()};
}
#endif

void AddElementRows(std::vector<Row>& rows) {
  rows.push_back({"Add",
                  "_Nuv_Array_CNArrMathAdd_",
                  kSizes,
                  TwoArrays,
                  {Plain([](const double* a, const double* b, double* out, std::size_t n) {
                     for (std::size_t i = 0; i < n; ++i) out[i] = a[i] + b[i];
                   }),
                   Memcpy(1.5)}});
  rows.push_back(
      {"ConstMulAdd",
       "_Nuv_Array_CNArrMathConstMulAdd_",
       kSizes,
       [](Random& random, std::size_t n) { return List(UniformNumbers(random, n), 1.5, 2.5); },
       {Plain([](const double* a, const double*, double* out, std::size_t n) {
          for (std::size_t i = 0; i < n; ++i) out[i] = a[i] * 1.5 + 2.5;
        }),
        Memcpy()}});
  rows.push_back(
      {"Threshold",
       "_Nuv_Array_CNArrMathThreshold_",
       kSizes,
       [](Random& random, std::size_t n) { return List(UniformNumbers(random, n), 0.5, 2.0, 1.0); },
       {Plain([](const double* a, const double*, double* out, std::size_t n) {
          for (std::size_t i = 0; i < n; ++i) out[i] = a[i] >= 0.5 ? 2.0 : 1.0;
        }),
        Memcpy()}});
  rows.push_back({"Reverse",
                  "_Nuv_Array_CNArrReverse_",
                  kSizes,
                  OneArray,
                  {Plain([](const double* a, const double*, double* out, std::size_t n) {
                     for (std::size_t i = 0; i < n; ++i) out[i] = a[n - 1 - i];
                   }),
                   Memcpy()}});
  rows.push_back({"Insert",
                  "_Nuv_Array_CNArrInsert_",
                  kSizes,
                  [](Random& random, std::size_t n) {
                    return List(UniformNumbers(random, n), static_cast<double>(n / 2), 1.0);
                  },
                  {Memcpy()}});
  rows.push_back({"Concatenate", "_Nuv_Array_CNArrConcatArr_", kSizes, TwoArrays, {Memcpy(2.0)}});
  rows.push_back({"GetRange",
                  "_Nuv_Array_CNArrGetRange_",
                  kSizes,
                  [](Random& random, std::size_t n) {
                    return List(UniformNumbers(random, n), 0.0, static_cast<double>(n));
                  },
                  {Memcpy()}});
}

void AddStatisticRows(std::vector<Row>& rows) {
  Row extrema = {"Extrema",
                 "_Nuv_Array_CNArrMathExtrema_",
                 kSizes,
                 OneArray,
                 {PlainSum([](Span a) {
                   std::size_t most = 0;
                   std::size_t least = 0;
                   for (std::size_t i = 1; i < a.size(); ++i) {
                     if (a[i] > a[most]) most = i;
                     if (a[i] < a[least]) least = i;
                   }
                   asm volatile("" : "+r"(least));
                   return a[most];
                 })},
                 true};
  Row mean = {
      "MeanAndVariance", "_Nuv_Array_CNMeanAndVar_", kSizes, OneArray, {PlainSum([](Span a) {
        double sum = 0.0;
        double squares = 0.0;
        for (const double x : a) {
          sum += x;
          squares += x * x;
        }
        asm volatile("" : "+x"(squares));
        return sum / static_cast<double>(a.size());
      })}};
#ifdef FORMULA_WITH_OPENCV
  extrema.peers.push_back(Other("OpenCV", [](const Inputs& in, Out& out) {
    out.numbers.resize(1);
    cv::Point most;
    cv::Point least;
    cv::minMaxLoc(Matrix(Numbers(in[0])), nullptr, out.numbers.data(), &least, &most);
  }));
  mean.peers.push_back(Other("OpenCV", [](const Inputs& in, Out& out) {
    cv::Scalar average;
    cv::Scalar deviation;
    cv::meanStdDev(Matrix(Numbers(in[0])), average, deviation);
    out.numbers.assign(1, average[0]);
  }));
#endif
  rows.push_back(extrema);
  rows.push_back(mean);
}

void AddSignalRows(std::vector<Row>& rows) {
  for (const int passes : {1, 10}) {
    rows.push_back({"Smooth " + std::to_string(passes),
                    "_Nuv_Array_CNArrMathSmooth_",
                    kSizes,
                    [passes](Random& random, std::size_t n) {
                      return List(UniformNumbers(random, n), passes, false, false);
                    },
                    {Other("plain loop", [passes](const Inputs& in, Out& out) {
                      const Span a = Numbers(in[0]);
                      out.numbers.assign(a.begin(), a.end());
                      SmoothPlainly(out.numbers, passes, false);
                    })}});
  }
  const auto pattern_size = [](std::size_t n) { return n == 1000 ? 50 : n / 10 * n / 4000; };
  Row correlate = {
      "CorrelateCircular",
      "_Nuv_Array_CNArrMathCorrelateCircular_",
      {1000, 2000, 4000},
      [=](Random& random, std::size_t n) {
        return List(UniformNumbers(random, pattern_size(n)), UniformNumbers(random, n), false);
      },
      {Other("plain loop", [](const Inputs& in, Out& out) {
        const std::vector<double> pattern(Numbers(in[0]).begin(), Numbers(in[0]).end());
        out.copy.assign(Numbers(in[1]).begin(), Numbers(in[1]).end());
        out.numbers.resize(out.copy.size());
        CorrelatePlainly(pattern, out.copy, out.numbers);
      })}};
#ifdef FORMULA_WITH_OPENCV
  // In floats; the search array is already written once more behind its end.
  correlate.peers.push_back(Other(
      "OpenCV",
      [](const Inputs& /*in*/, Out& out) {
        cv::Mat scores;
        cv::matchTemplate(Matrix(out.floats), Matrix(out.more_floats), scores,
                          cv::TM_CCOEFF_NORMED);
        out.numbers.assign(scores.begin<float>(), scores.end<float>());
      },
      [](const Inputs& in, Out& out) {
        const Span pattern = Numbers(in[0]);
        const Span search = Numbers(in[1]);
        out.more_floats.assign(pattern.begin(), pattern.end());
        out.floats.assign(search.begin(), search.end());
        out.floats.insert(out.floats.end(), search.begin(),
                          search.begin() + static_cast<std::ptrdiff_t>(pattern.size()) - 1);
      }));
#endif
  rows.push_back(correlate);
}

}  // namespace

CNuvObject UniformNumbers(Random& random, std::size_t size, double below) {
  std::uniform_real_distribution<double> number(0.0, below);
  CNuvObject object;
  auto& array = static_cast<CNuvDoubleVector&>(object);
  array.Resize(size);
  std::generate_n(array.GetStorage(), size, [&] { return number(random); });
  return object;
}

void AddNumberRows(std::vector<Row>& rows) {
  AddElementRows(rows);
  AddStatisticRows(rows);
  AddSignalRows(rows);
}

}  // namespace bench

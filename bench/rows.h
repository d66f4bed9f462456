// Rows: what is compared, an instruction on some inputs beside other ways to the same answer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <deque>
#include <functional>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "host/nuv_object.h"

namespace bench {

using Inputs = std::vector<CNuvObject>;
using Random = std::mt19937_64;

/// What a peer prepares before it is timed, and what it writes. `numbers`, `points` and `text` are
/// held against the instruction's first result.
struct Out {
  std::vector<double> numbers;
  std::vector<CNuvPoint> points;
  std::string text;
  std::vector<double> copy;
  std::vector<float> floats;
  std::vector<float> more_floats;
};

/// The inputs taken in turn, each with an output of its own.
struct Pool {
  const std::deque<Inputs>& inputs;
  std::deque<Out> outs;
  std::size_t next = 0;
};

struct Peer {
  std::string name;
  std::function<void(const Inputs&, Out&)> prepare;
  /// Some calls, on the inputs in turn.
  std::function<void(Pool&, std::size_t)> calls;
};

inline void NoPreparation(const Inputs& /*in*/, Out& /*out*/) {}

/// Another way to the answer: `run` takes inputs and output.
template <class Run, class Prepare = decltype(&NoPreparation)>
Peer Other(const char* name, Run run, Prepare prepare = &NoPreparation) {
  return {name, prepare, [run](Pool& pool, std::size_t calls) {
            for (; calls > 0; --calls) {
              run(pool.inputs[pool.next], pool.outs[pool.next]);
              asm volatile("" ::: "memory");  // what was written may be read
              if (++pool.next == pool.inputs.size()) pool.next = 0;
            }
          }};
}

struct Row {
  std::string name;
  const char* identifier;
  std::vector<std::size_t> sizes;
  std::function<Inputs(Random&, std::size_t)> inputs;
  std::vector<Peer> peers;
  /// The work depends on the values: as many inputs as make a million elements, which no branch
  /// predictor learns. Else there are few, and small ones stay in the cache.
  bool rotates = false;
  Inputs constants = {};
};

/// The elements of an array that is an input.
template <class Vector>
std::span<const typename Vector::value_type> Elements(const CNuvObject& value) {
  const auto& array = static_cast<const Vector&>(value);
  return {array.GetStorage(), array.Size()};
}
inline std::span<const double> Numbers(const CNuvObject& value) {
  return Elements<CNuvDoubleVector>(value);
}
inline std::span<const CNuvPoint> Points(const CNuvObject& value) {
  return Elements<CNuvPointVector>(value);
}
inline const char* Text(const CNuvObject& value) {
  return static_cast<const char*>(value);
}

template <class... Values>
Inputs List(const Values&... values) {
  Inputs inputs(sizeof...(values));
  std::size_t at = 0;
  ((inputs[at++] = values), ...);
  return inputs;
}

/// Seconds that this process has run, in which neither waiting nor other processes count.
inline double Now() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

CNuvObject UniformNumbers(Random& random, std::size_t size, double below = 1.0);
CNuvObject UniformPoints(Random& random, std::size_t size);
/// Words of 1 to 9 letters, the frequent ones of English more often, each followed by a blank.
std::string Words(Random& random, std::size_t length);

void AddNumberRows(std::vector<Row>& rows);
void AddOrderRows(std::vector<Row>& rows);
void AddTextRows(std::vector<Row>& rows);
void AddFitRows(std::vector<Row>& rows);

#ifdef FORMULA_WITH_HIGHWAY
/// Highway's sort for the lanes of AVX2, chosen by the compiler.
void SortByAvx2(double* numbers, std::size_t size);
#endif

/// Prints as JSON how the time of each array and string instruction grows with its inputs.
void PrintGrowth();

}  // namespace bench

// Runs instructions and other ways to the same answers alternately, and prints the times as JSON.
//
//   compare [--numpy PYTHON] [ROW...]   all rows, or those named as "Sort/1000"; NumPy by that
//                                      interpreter
//   compare --growth                    how times grow with the size of inputs

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "bench/ready_context.h"
#include "bench/rows.h"

#ifdef FORMULA_WITH_HIGHWAY
#include <hwy/highway.h>
#endif
#ifdef FORMULA_WITH_OPENCV
#include <opencv2/core/version.hpp>
#endif

namespace bench {
namespace {

constexpr double kBatch = 3e-3;  // seconds
constexpr double kMostForContestant = 0.6;
constexpr int kMostRounds = 31;
constexpr int kFewestRounds = 7;

/// bench/numpy_peer.py, which is told what to run and answers with seconds.
class NumPy {
 public:
  explicit NumPy(const std::string& python) {
    int there[2];
    int back[2];
    if (pipe2(there, O_CLOEXEC) != 0 || pipe2(back, O_CLOEXEC) != 0 || (child_ = fork()) < 0) {
      throw std::runtime_error("cannot start NumPy's script");
    }
    if (child_ == 0) {
      dup2(there[0], STDIN_FILENO);
      dup2(back[1], STDOUT_FILENO);
      execlp(python.c_str(), python.c_str(), FORMULA_NUMPY_PEER, nullptr);
      _exit(127);
    }
    close(there[0]);
    close(back[1]);
    to_ = fdopen(there[1], "w");
    from_ = fdopen(back[0], "r");
  }
  /// Whether it has such a row.
  bool Prepare(const std::string& row, std::size_t size, std::size_t pool) {
    std::fprintf(to_, "%zu %zu %s\n", size, pool, row.c_str());
    return Answer() == 1.0;
  }
  double Time(std::size_t calls) {
    std::fprintf(to_, "%zu\n", calls);
    return Answer();
  }

 private:
  double Answer() {
    double seconds = 0.0;
    std::fflush(to_);
    if (std::fscanf(from_, "%lf", &seconds) != 1) throw std::runtime_error("NumPy's script ended");
    return seconds;
  }
  pid_t child_ = -1;
  std::FILE* to_ = nullptr;
  std::FILE* from_ = nullptr;
};

struct Contestant {
  std::string name;
  std::function<double(std::size_t)> time;  ///< seconds of so many calls
  std::size_t batch = 1;
  std::vector<double> times = {};  ///< seconds a call, by round
};

template <class Calls>
std::function<double(std::size_t)> Timed(Calls calls) {
  return [calls](std::size_t count) {
    const double begin = Now();
    calls(count);
    return Now() - begin;
  };
}

/// Batches of about the same time, in turn and each round from another one on.
void Race(std::vector<Contestant>& contestants) {
  int rounds = kMostRounds;
  for (Contestant& one : contestants) {
    double took = 0.0;
    while ((took = one.time(one.batch)) < kBatch / 2) one.batch *= 2;
    rounds = std::min(rounds, static_cast<int>(kMostForContestant / took));
  }
  rounds = std::max(rounds, kFewestRounds);
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < contestants.size(); ++i) {
      Contestant& one = contestants[(i + static_cast<std::size_t>(round)) % contestants.size()];
      one.times.push_back(one.time(one.batch) / static_cast<double>(one.batch));
    }
  }
}

/// Lower quartile, median, upper quartile.
nlohmann::json Quartiles(std::vector<double> values) {
  std::ranges::sort(values);
  const std::size_t last = values.size() - 1;
  return {values[last / 4], values[last / 2], values[last - last / 4]};
}

bool IsNear(double a, double b) {
  return std::fabs(a - b) <= 1e-4 * std::max(1.0, std::fabs(b));
}

/// A peer that answers otherwise does other work: nothing to compare.
bool IsSame(const Out& out, const CNuvObject& result) {
  if (!out.text.empty()) return out.text == Text(result);
  if (!out.points.empty()) {
    return std::ranges::equal(out.points, Points(result),
                              [](const CNuvPoint& a, const CNuvPoint& b) { return a == b; });
  }
  if (out.numbers.empty()) return true;
  if (result.GetType() == NUV_OBJ_DOUBLE) {
    return IsNear(out.numbers[0], static_cast<double>(result));
  }
  return std::ranges::equal(out.numbers, Numbers(result), IsNear);
}

nlohmann::json Measured(const Row& row, std::size_t size, NumPy* numpy) {
  const nuvhost::CatalogueEntry& instruction = *Loaded().FindIdentifier(row.identifier);
  const DescriptorRecord& descriptor = *instruction.descriptor;
  const std::size_t count =
      row.rotates ? std::max<std::size_t>(4, (std::size_t{1} << 20) / size) : 4;
  Random random(size);
  // Few arrays of one size would all lie as far from each other: a few bytes behind a multiple of a
  // page, where a load waits for an earlier store, none of them or all.
  std::vector<std::unique_ptr<char[]>> gaps;
  const auto leave_gap = [&] {
    if (!row.rotates) gaps.emplace_back(new char[random() % 4096]);
  };
  std::deque<Inputs> inputs;
  std::deque<ReadyContext> contexts;
  for (std::size_t i = 0; i < count; ++i) {
    leave_gap();
    Inputs& one = inputs.emplace_back(row.inputs(random, size));
    for (std::size_t k = one.size(); k < descriptor.inputs.Size(); ++k) {
      one.push_back(descriptor.inputs[k].default_value);
    }
    std::vector<CNuvObject*> pointers;
    for (CNuvObject& value : one) pointers.push_back(&value);
    contexts.emplace_back(pointers, descriptor, row.constants);
  }

  std::vector<Contestant> contestants;
  std::size_t next = 0;
  const auto execute = [&](std::size_t calls) {
    for (; calls > 0; --calls) {
      if (instruction.prototype->Execute(&contexts[next]) != Status::kSuccess) {
        throw std::runtime_error(row.name + " fails");
      }
      if (++next == contexts.size()) next = 0;
    }
  };
  contestants.push_back({"ours", Timed(execute)});
  for (std::size_t i = 0; i < count; ++i) {
    leave_gap();
    execute(1);  // allocates its results
  }
  std::deque<Pool> pools;
  for (const Peer& peer : row.peers) {
    Pool& pool = pools.emplace_back(Pool{inputs, {}, 0});
    pool.outs.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
      leave_gap();
      peer.prepare(inputs[i], pool.outs[i]);
      peer.calls(pool, 1);
    }
    contestants.push_back(
        {peer.name, Timed([&pool, &peer](std::size_t calls) { peer.calls(pool, calls); })});
  }
  if (numpy != nullptr && numpy->Prepare(row.name, size, count)) {
    contestants.push_back({"NumPy", [numpy](std::size_t calls) { return numpy->Time(calls); }});
  }
  Race(contestants);
  for (std::size_t i = 0; i < pools.size(); ++i) {
    if (!IsSame(pools[i].outs[0], contexts[0].Results()[0])) {
      throw std::runtime_error(row.name + ": " + row.peers[i].name + " answers otherwise");
    }
  }

  nlohmann::json json = {{"row", row.name}, {"size", size}, {"peers", nlohmann::json::array()}};
  const std::vector<double>& ours = contestants.front().times;
  json["seconds"] = Quartiles(ours);
  for (const Contestant& one : contestants) {
    if (one.name == "ours") continue;
    std::vector<double> ratios;
    for (std::size_t i = 0; i < ours.size(); ++i) ratios.push_back(one.times[i] / ours[i]);
    json["peers"].push_back(
        {{"name", one.name}, {"seconds", Quartiles(one.times)}, {"ratio", Quartiles(ratios)}});
  }
  return json;
}

/// Calls so short that the frame is what they cost, beside a virtual call that does nothing.
void AddCallRows(std::vector<Row>& rows) {
  const auto bare = [](IXInstrPlugin* instruction) {
    return Peer{"virtual call", NoPreparation, [instruction](Pool& /*pool*/, std::size_t calls) {
                  for (; calls > 0; --calls) {
                    IXInstrPlugin* called = instruction;
                    asm volatile("" : "+r"(called));
                    called->Reserved8();
                  }
                }};
  };
  for (const auto& [name, identifier] :
       {std::pair{"call of Add", "_Nuv_Numeric_AddNumbers_"},
        std::pair{"call of Divide", "_Nuv_Numeric_DivideNumbers_"}}) {
    rows.push_back({name,
                    identifier,
                    {2},
                    [](Random&, std::size_t) { return List(1.5, 2.5); },
                    {bare(Loaded().FindIdentifier(identifier)->prototype)}});
  }
}

/// Those of the libraries among the peers; null for one that is not installed.
nlohmann::json Versions() {
  nlohmann::json versions{{"Highway", nullptr}, {"OpenCV", nullptr}};
#ifdef FORMULA_WITH_HIGHWAY
  versions["Highway"] = fmt::format("{}.{}.{}", HWY_MAJOR, HWY_MINOR, HWY_PATCH);
#endif
#ifdef FORMULA_WITH_OPENCV
  versions["OpenCV"] = CV_VERSION;
#endif
  return versions;
}

void PrintRows(const std::vector<std::string>& wanted, NumPy* numpy) {
  std::vector<Row> rows;
  AddCallRows(rows);
  AddNumberRows(rows);
  AddOrderRows(rows);
  AddTextRows(rows);
  AddFitRows(rows);
  nlohmann::json measured = nlohmann::json::array();
  for (const Row& row : rows) {
    for (const std::size_t size : row.sizes) {
      const std::string name = row.name + "/" + std::to_string(size);
      if (!wanted.empty() && std::ranges::find(wanted, name) == wanted.end()) continue;
      measured.push_back(Measured(row, size, numpy));
    }
  }
  std::puts(
      nlohmann::json{{"compiler", "g++ " __VERSION__}, {"peers", Versions()}, {"rows", measured}}
          .dump()
          .c_str());
}

}  // namespace
}  // namespace bench

int main(int count, char** arguments) {
  try {
    std::unique_ptr<bench::NumPy> numpy;
    std::vector<std::string> wanted;
    for (int i = 1; i < count; ++i) {
      const std::string word = arguments[i];
      if (word == "--growth") {
        bench::PrintGrowth();
        return 0;
      }
      if (word == "--numpy" && i + 1 < count) {
        numpy = std::make_unique<bench::NumPy>(arguments[++i]);
      } else {
        wanted.push_back(word);
      }
    }
    bench::PrintRows(wanted, numpy.get());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "compare: %s\n", error.what());
    return 1;
  }
}

// The string instructions on 1 MB of text, each beside the plain way to the same answer: a search
// by std::string_view, and one copy into an output that keeps its storage. Every plain row reads
// its inputs as the instructions do, as C strings.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <deque>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "nuvhost/library/catalogue.h"
#include "reference_host/services/call_context.h"

namespace {

constexpr std::size_t kLength = std::size_t{1} << 20;
constexpr unsigned kPool = 8;  // different inputs, taken in turn

using Texts = std::vector<std::string>;
using Views = std::vector<std::string_view>;

struct Workload {
  const char* label;
  const char* instruction;
  Texts (*inputs)(unsigned seed);
  std::size_t (*plain)(const Views& inputs, std::string& output);
  bool as_array = false;  // the texts are the elements of one array
};

/// Words of 1 to 9 letters, the frequent ones of English more often, each followed by a blank.
std::string Words(unsigned seed, std::size_t length) {
  constexpr std::string_view kLetters = "eeeeeetttttaaaaooooiiiinnnnssshhhrrrdddlllucmfwygpbvk";
  std::mt19937 random(seed);
  std::string text;
  while (text.size() < length) {
    for (std::size_t left = 1 + random() % 9; left > 0; --left) {
      text += kLetters[random() % kLetters.size()];
    }
    text += ' ';
  }
  text.resize(length);
  return text;
}

/// The words with 10000 marks among them.
std::string MarkedWords(unsigned seed) {
  std::string text = Words(seed, kLength);
  for (std::size_t i = 0; i < 10000; ++i) text.replace(i * (kLength / 10000), 8, "<serial>");
  return text;
}

Texts Pieces(unsigned seed) {
  const std::string text = Words(seed, kLength);
  std::mt19937 random(seed);
  Texts pieces;
  for (std::size_t at = 0; at < text.size(); at += pieces.back().size()) {
    pieces.push_back(text.substr(at, 1 + random() % 20));
  }
  return pieces;
}

/// A text of one letter, and one that fits it but for its middle.
template <std::size_t kHalf>
Texts Repeating(unsigned /*seed*/) {
  const std::string half(kHalf, 'a');
  return {std::string(kLength, 'a'), half + "b" + half};
}

std::size_t Find(const Views& in, std::string& /*output*/) {
  return in[0].find(in[1]);
}

std::size_t FindReverse(const Views& in, std::string& /*output*/) {
  return in[0].rfind(in[1]);
}

std::size_t Replace(const Views& in, std::string& output) {
  output.clear();
  std::size_t from = 0;
  for (std::size_t at; (at = in[0].find(in[1], from)) != std::string_view::npos;) {
    output.append(in[0], from, at - from).append(in[2]);
    from = at + in[1].size();
  }
  output.append(in[0], from);
  return output.size();
}

std::size_t Join(const Views& in, std::string& output) {
  output.clear();
  for (const std::string_view text : in) output.append(text);
  return output.size();
}

std::size_t CountOccurrences(const Views& in, std::string& /*output*/) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = in[0].find(in[1], at)) != std::string_view::npos; ++count) {
    at += in[1].size();
  }
  return count;
}

const Workload kWorkloads[] = {
    {"FindStr/absent", "FindStr",
     [](unsigned s) {
       return Texts{Words(s, kLength), "entries"};
     },
     Find},
    {"FindStr/absent-letter", "FindStr",
     [](unsigned s) {
       return Texts{Words(s, kLength), "Part"};
     },
     Find},
    {"FindStr/one-letter", "FindStr",
     [](unsigned s) {
       return Texts{Words(s, kLength), "P"};
     },
     Find},
    {"FindStrReverse/absent", "FindStrReverse",
     [](unsigned s) {
       return Texts{Words(s, kLength), "entries"};
     },
     FindReverse},
    {"FindStrNth/10000", "FindStrNth",
     [](unsigned s) {
       return Texts{MarkedWords(s), "<serial>"};
     },
     CountOccurrences},
    {"FindStrNth/common", "FindStrNth",
     [](unsigned s) {
       return Texts{Words(s, kLength), "e "};
     },
     CountOccurrences},
    {"ReplaceStr/10000", "ReplaceStr",
     [](unsigned s) {
       return Texts{MarkedWords(s), "<serial>", "0815"};
     },
     Replace},
    {"ReplaceStr/blanks", "ReplaceStr",
     [](unsigned s) {
       return Texts{Words(s, kLength), " ", ", "};
     },
     Replace},
    {"AddStr", "AddStr",
     [](unsigned s) {
       return Texts{Words(s, kLength / 2), Words(s + 1, kLength / 2)};
     },
     Join},
    {"CreateStrInf/2", "CreateStrInf",
     [](unsigned s) {
       return Texts{Words(s, kLength / 2), Words(s + 1, kLength / 2)};
     },
     Join},
    {"CreateStrInf/100000", "CreateStrInf", Pieces, Join},
    {"PackStr/1", "PackStr", [](unsigned s) { return Texts{Words(s, kLength)}; }, Join, true},
    {"PackStr/100000", "PackStr", Pieces, Join, true},
    {"FindStr/repeating-65", "FindStr", Repeating<32>, Find},
    {"FindStr/repeating-4097", "FindStr", Repeating<2048>, Find},
    {"FindStrReverse/repeating-4097", "FindStrReverse", Repeating<2048>, FindReverse},
};

void Ours(benchmark::State& state, const Workload& workload) {
  static const nuvhost::Catalogue catalogue(nuvhost::DefaultPluginPath());
  static nuvhost::Services services;
  const nuvhost::CatalogueEntry& instruction = catalogue.Find(workload.instruction);
  std::deque<nuvhost::CallContext> calls;
  for (unsigned seed = 0; seed < kPool; ++seed) {
    nuvhost::CallContext& call = calls.emplace_back(*instruction.descriptor, services);
    const Texts texts = workload.inputs(seed);
    if (workload.as_array) {
      auto& array = static_cast<CNuvStringVector&>(call.inputs[0]);
      for (const std::string& text : texts) array.PushBack(CNuvString(text));
      continue;
    }
    if (call.inputs.size() < texts.size()) call.inputs.resize(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) call.inputs[i] = texts[i].c_str();
    if (call.inputs.size() > texts.size()) call.inputs.back() = 1e9;  // the number of FindStrNth
  }
  unsigned next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(calls[next++ % kPool].Execute(*instruction.prototype));
  }
}

void Plain(benchmark::State& state, const Workload& workload) {
  std::deque<Texts> pool;
  for (unsigned seed = 0; seed < kPool; ++seed) pool.push_back(workload.inputs(seed));
  std::string outputs[kPool];
  unsigned next = 0;
  for (auto _ : state) {
    const unsigned turn = next++ % kPool;
    Views views;
    views.reserve(pool[turn].size());
    for (const std::string& text : pool[turn]) views.emplace_back(text.c_str());
    benchmark::DoNotOptimize(workload.plain(views, outputs[turn]));
    benchmark::ClobberMemory();
  }
}

const bool registered = [] {
  for (const Workload& workload : kWorkloads) {
    const std::string label = workload.label;
    for (auto* row : {benchmark::RegisterBenchmark((label + "/ours").c_str(), Ours, workload),
                      benchmark::RegisterBenchmark((label + "/plain").c_str(), Plain, workload)}) {
      row->Unit(benchmark::kMicrosecond);
    }
  }
  return true;
}();

}  // namespace

// Gives each target the inputs that fuzzing found, and some that nobody chose.
//
// usage: fuzz_replay CORPUS [TARGET]...   (a folder with a folder of files for each target)
//
// FORMULA_TEST_ROUNDS says how many random inputs each target gets; FUZZ_CALLS names a file for how
// often each instruction was executed.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "tests/fuzz/targets.h"
#include "tests/instr/random_rounds.h"

namespace {

std::vector<std::uint8_t> ReadAll(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

int main(int count, char** words) {
  fuzz::Require(count >= 2, "usage: fuzz_replay CORPUS [TARGET]...");
  const std::span<char*> chosen(words + 2, words + count);
  // Read before a target clears the environment or leaves the folder.
  const int calls = RandomRounds(200);
  const int others = RandomRounds(500);
  const char* const wanted = std::getenv("FUZZ_CALLS");
  const std::string counts = wanted == nullptr ? "" : std::filesystem::absolute(wanted).string();
  const std::filesystem::path corpus = std::filesystem::absolute(words[1]);
  for (const fuzz::Target& target : fuzz::kTargets) {
    if (!chosen.empty() && std::ranges::find(chosen, target.name) == chosen.end()) continue;
    std::size_t replayed = 0;
    for (const auto& file : std::filesystem::directory_iterator(corpus / target.name)) {
      const std::vector<std::uint8_t> input = ReadAll(file.path());
      std::printf("%s\n", file.path().filename().string().c_str());
      std::fflush(stdout);  // what comes next may end the process
      target.run(fuzz::Bytes(input));
      ++replayed;
    }
    fuzz::Require(replayed > 0, "no inputs in the corpus");
    std::mt19937_64 random(1);
    const int rounds = target.name == "call" ? calls : others;
    for (int round = 0; round < rounds; ++round) {
      std::vector<std::uint8_t> input(random() % 200);
      for (std::uint8_t& byte : input) byte = static_cast<std::uint8_t>(random());
      target.run(fuzz::Bytes(input));
    }
    std::printf("%.*s: %zu files, %d random inputs\n", static_cast<int>(target.name.size()),
                target.name.data(), replayed, rounds);
  }
  if (!counts.empty()) fuzz::WriteCalls(counts.c_str());
}

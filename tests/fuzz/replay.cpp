// Gives each target the inputs that fuzzing found, and some that nobody chose.
//
// usage: fuzz_replay CORPUS   (a folder with a folder of files for each target)

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
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
  fuzz::Require(count == 2, "usage: fuzz_replay CORPUS");
  const int scale = RandomRounds(100);  // read before a target clears the environment
  const std::filesystem::path corpus = std::filesystem::absolute(words[1]);
  for (const fuzz::Target& target : fuzz::kTargets) {
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
    const int rounds = target.name == "call" ? 2 * scale : 5 * scale;
    for (int round = 0; round < rounds; ++round) {
      std::vector<std::uint8_t> input(random() % 200);
      for (std::uint8_t& byte : input) byte = static_cast<std::uint8_t>(random());
      target.run(fuzz::Bytes(input));
    }
    std::printf("%.*s: %zu files, %d random inputs\n", static_cast<int>(target.name.size()),
                target.name.data(), replayed, rounds);
  }
}

// How often a test tries random input, and on what.
#pragma once

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <span>
#include <string>

/// The usual count, or what FORMULA_TEST_ROUNDS says, for a long run.
inline int RandomRounds(int usual) {
  const char* wanted = std::getenv("FORMULA_TEST_ROUNDS");
  return wanted == nullptr ? usual : std::atoi(wanted);
}

/// A number of any kind: all bit patterns, denormal ones, moderate ones with few bits, so that
/// roundings tie.
inline double AnyNumber(std::mt19937_64& random) {
  const std::uint64_t bits = random();
  switch (random() % 4) {
    case 0: return std::bit_cast<double>(bits);
    case 1: return std::bit_cast<double>(bits & 0x800fffffffffffffU);
    case 2: return static_cast<double>(static_cast<std::int64_t>(bits % 20001) - 10000) / 16.0;
    default:
      return std::bit_cast<double>((bits & 0x800fffffffffffffU) | (983 + random() % 80) << 52);
  }
}

/// Pieces drawn at random and put together.
inline std::string AnyText(std::mt19937_64& random, std::span<const char* const> pieces,
                           std::size_t most) {
  std::string text;
  for (std::size_t count = random() % (most + 1); count > 0; --count) {
    text += pieces[random() % pieces.size()];
  }
  return text;
}

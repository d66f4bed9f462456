// How often a test tries random input, and on what.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <span>
#include <string>

/// The usual count, or what FORMULA_TEST_ROUNDS says, for a long run.
inline int RandomRounds(int usual) {
  const char* wanted = std::getenv("FORMULA_TEST_ROUNDS");
  return wanted == nullptr ? usual : std::atoi(wanted);
}

inline double DoubleFromBits(std::uint64_t bits) {
  double number = 0.0;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

/// A number of any kind: all bit patterns, denormal ones, moderate ones with few bits, so that
/// roundings tie.
inline double AnyNumber(std::mt19937_64& random) {
  const std::uint64_t bits = random();
  switch (random() % 4) {
    case 0: return DoubleFromBits(bits);
    case 1: return DoubleFromBits(bits & 0x800fffffffffffffU);
    case 2: return static_cast<double>(static_cast<std::int64_t>(bits % 20001) - 10000) / 16.0;
    default: return DoubleFromBits((bits & 0x800fffffffffffffU) | (983 + random() % 80) << 52);
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

#include "nuvhost/system/input_file.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>

#include "nuvhost/error.h"
#include "nuvhost/system/paths.h"

namespace nuvhost {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 18;

}  // namespace

bool IsReadable(const std::string& name, std::string& reason) {
  const std::filesystem::path path = PathFromUtf8(name);
  std::error_code error;
  if (!std::filesystem::exists(path, error)) {
    reason = error ? error.message() : "there is no such file";
  } else if (std::filesystem::is_directory(path, error)) {
    reason = "it is a folder, not a file";
  } else if (!std::ifstream(path, std::ios::binary)) {
    reason = "it cannot be opened";
  } else {
    return true;
  }
  return false;
}

void ExpectReadWell(const std::istream& stream, const std::string& name) {
  if (stream.bad()) throw UserError("cannot read {}: it cannot be read to its end", name);
  if (stream.fail() && !stream.eof()) throw UserError("cannot read {}: it cannot be opened", name);
}

std::optional<std::string> ReadBytes(const std::string& name, std::string& reason) {
  const std::filesystem::path path = PathFromUtf8(name);
  std::ifstream file(path, std::ios::binary);
  std::error_code unsized;
  const std::uintmax_t expected = std::filesystem::file_size(path, unsized);
  if (!file || unsized == std::errc::is_a_directory) {
    if (IsReadable(name, reason)) reason = "it cannot be opened";
    return std::nullopt;
  }
  std::string text;
  std::size_t block = kBlock;
  if (!unsized) {
    block = static_cast<std::size_t>(std::clamp<std::uintmax_t>(expected + 1, 4096, kBlock));
    text.reserve(static_cast<std::size_t>(expected) + block);
  }
  for (std::size_t size = 0; file; text.resize(size)) {
    text.resize(size + block);
    file.read(text.data() + size, static_cast<std::streamsize>(block));
    size += static_cast<std::size_t>(file.gcount());
  }
  if (!file.bad()) return text;
  reason = "it cannot be read to its end";
  return std::nullopt;
}

std::optional<std::string> ReadStandardInput(std::string& reason) {
  static bool was_read = false;
  if (was_read) {
    reason = "standard input can be read once, and was";
    return std::nullopt;
  }
  was_read = true;
  std::string text;
  std::size_t got = kBlock;
  for (std::size_t size = 0; got > 0; text.resize(size)) {
    text.resize(size + kBlock);
    got = std::fread(text.data() + size, 1, kBlock, stdin);
    size += got;
  }
  if (std::ferror(stdin) == 0) return text;
  reason = "standard input cannot be read to its end";
  return std::nullopt;
}

bool ReadLine(std::istream& stream, std::string& line, std::size_t longest) try {
  line.clear();
  constexpr int kEnd = std::istream::traits_type::eof();
  int c = stream.rdbuf()->sbumpc();
  if (c == kEnd) stream.setstate(std::ios::eofbit | std::ios::failbit);
  const bool is_line = c != kEnd;
  for (; c != kEnd && c != '\n'; c = stream.rdbuf()->sbumpc()) {
    if (line.size() <= longest) line += static_cast<char>(c);
  }
  if (c == kEnd) stream.setstate(std::ios::eofbit);
  return is_line;
} catch (const std::ios::failure&) {
  stream.setstate(std::ios::badbit);
  return false;
}

}  // namespace nuvhost

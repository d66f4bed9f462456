// What a process is like: what a library must leave as it found it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace nuvhost::check {

/// Each fact by its name: "the locale", "environment variable HOME", "open file 3".
using ProcessFacts = std::map<std::string, std::string>;

ProcessFacts TakeProcessFacts();
/// Adds the host's settings, a part of them on every system.
void AddSettings(ProcessFacts& facts);

/// The first fact that differs, "the locale was C, is de_DE"; "" where all are the same.
std::string Difference(const ProcessFacts& before, const ProcessFacts& after);

struct MemoryInUse {
  std::size_t heap;   ///< bytes of the C runtime's heap
  std::size_t pages;  ///< bytes of address space that are memory
};
MemoryInUse MeasureMemory();

/// Makes what the heap hands out next hold a byte, as far as that can be had.
void FillHeap(unsigned char byte);
/// The same for memory that the heap has from the system, where the system can; 0 ends it.
void FillFreshHeap(unsigned char byte);

/// Standard output and standard error, caught as long as the object lives.
class CaughtOutput {
 public:
  CaughtOutput();
  CaughtOutput(const CaughtOutput&) = delete;
  CaughtOutput& operator=(const CaughtOutput&) = delete;
  ~CaughtOutput();

  /// What was written since the last time, the first bytes of it.
  std::string Take();

 private:
  std::intptr_t reader_;
  int before_[2];
};

}  // namespace nuvhost::check

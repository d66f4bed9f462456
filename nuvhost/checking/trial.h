// Trial: one law applied to one library, and the record of it.
//
// The trial runs in a process that the library may crash or hang, so everything is written down at
// once, one line each: where the trial is, what it found, and at last that it is over. The verdict
// is what the record says; how the process ended says nothing that can be trusted. The record
// begins with a random key, made before the library is loaded, and each further line bears it: a
// line without it was written by someone else.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "nuvhost/library/plugin_library.h"

namespace nuvhost::check {

/// Which random calls to make. Call n of a seed is the first call of the seed + n.
struct FuzzPlan {
  std::uint64_t seed = 0;
  std::uint64_t calls = 0;            ///< so many, each told of before it is made; 0 for as many as
  std::chrono::milliseconds time{0};  ///< this long
  std::vector<std::size_t> left_out = {};  ///< instructions by their positions
};

/// The seed of the next calls, how many are told of at once, and the instruction of a single one.
struct FuzzPlace {
  std::uint64_t seed = 0;
  std::uint64_t calls = 0;
  std::size_t instruction = 0;
};

/// What is on trial.
struct Charge {
  std::filesystem::path library;
  /// The identifiers of instructions that are not called, beside those that are known.
  std::vector<std::string> outer_world = {};
  FuzzPlan plan = {};  ///< of the law of random calls
};

/// The writing side. Texts are UTF-8.
class Trial {
 public:
  using Recorder = std::function<void(std::string_view line)>;

  Trial(Charge charge, Recorder recorder);

  const Charge& Charged() const { return charge_; }

  /// Loads the library, lets `use` use it, and unloads it. After an exception it stays loaded, as
  /// the exception's class may be its own.
  template <class Use>
  void WithLibrary(Use use) {
    libraries_.push_back(std::make_unique<PluginLibrary>(charge_.library));
    use(*libraries_.back());
    libraries_.pop_back();
  }

  /// What comes next, "building the descriptors": what to blame should the trial end here.
  void At(std::string_view step) { Write("at", step); }
  void Complain(std::string_view complaint);
  /// How far random calls have come.
  void Reached(const FuzzPlace& place);
  /// An instruction, by its position, is called no more.
  void LeaveOut(std::size_t instruction) { Write("left out", std::to_string(instruction)); }
  /// There is nothing to judge.
  void Skip(std::string_view reason) { Write("skip", reason); }
  /// What was left out of the judgement.
  void Note(std::string_view note) { Write("note", note); }
  /// How many instructions were not called.
  void NotCalled(std::size_t count) { Write("not called", std::to_string(count)); }
  /// The file is no dynamic library, so that no law can be judged.
  void CannotLoad(std::string_view reason) { Write("cannot load", reason); }
  void Finish();

 private:
  void Write(const char* what, std::string_view text);

  Charge charge_;
  Recorder recorder_;
  std::string key_;
  std::size_t complaints_ = 0;
  std::vector<std::unique_ptr<PluginLibrary>> libraries_;
};

enum class Outcome { kPassed, kFailed, kSkipped };

struct Verdict {
  Outcome outcome = Outcome::kFailed;
  std::vector<std::string> complaints;  ///< the first ones
  std::size_t complaint_count = 0;
  std::size_t not_called = 0;         ///< instructions that were left out
  std::string note;                   ///< why it was skipped, or what was left out
  std::string cannot_load;            ///< why the file is no dynamic library; empty where it is one
  bool over = false;                  ///< else it was cut short
  FuzzPlace reached;                  ///< how far random calls came
  std::vector<std::size_t> left_out;  ///< instructions that they left out from then on
};

/// Reads a trial's record. `ending` tells how its process ended where that was not in order,
/// "crashed"; a trial without an end was cut short by it.
Verdict ReadVerdict(std::string_view record, const std::string& ending);

/// A text of the library as it is shown: quoted, escaped, "null" for a null pointer.
std::string Quoted(const char* text);

}  // namespace nuvhost::check

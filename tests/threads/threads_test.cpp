// Every instruction on eight threads at once, over the same objects: the same input values, the
// same prototype, one named data store, one log, one environment. What answers otherwise than alone
// fails; the thread sanitizer sees the rest.

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "host/log.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/library/outer_world.h"
#include "tests/fuzz/borrowed_context.h"
#include "tests/fuzz/sandbox.h"
#include "tests/fuzz/values.h"
#include "tests/instr/random_rounds.h"

namespace {

using nuvhost::CallContext;
using nuvhost::CatalogueEntry;

constexpr std::size_t kThreads = 8;

/// Where all threads wait for one another. (std::barrier of MinGW's library never ends.)
class Meeting {
 public:
  void Wait() {
    std::unique_lock lock(mutex_);
    const int turn = turn_;
    if (++waiting_ == kThreads) {
      waiting_ = 0;
      ++turn_;
      all_here_.notify_all();
    } else {
      all_here_.wait(lock, [&] { return turn_ != turn; });
    }
  }

 private:
  std::mutex mutex_;
  std::condition_variable all_here_;
  std::size_t waiting_ = 0;
  int turn_ = 0;
};

/// Guarded, as a host's services must be that several threads share.
class SharedStore final : public IXNamedDataStore {
 public:
  void* DeletingDestructor(std::uint32_t /*flags*/) override { return this; }
  void* LookUp(const char* name) override {
    const std::lock_guard lock(mutex_);
    const auto found = pointers_.find(name);
    return found == pointers_.end() ? nullptr : found->second.get();
  }
  void Store(const char* name, void* pointer) override {
    const std::lock_guard lock(mutex_);
    std::unique_ptr<void, void (*)(void*)> owned(pointer, std::free);
    stored_ += pointers_.emplace(name, std::move(owned)).second ? 1 : 1000;
  }
  int Stored() const { return stored_; }

 private:
  std::mutex mutex_;
  int stored_ = 0;
  std::map<std::string, std::unique_ptr<void, void (*)(void*)>> pointers_;
};

/// The constants and inputs of a call that other threads read as well, and results of its own.
/// Messages, annotations and marks are dropped.
class SharedContext final : public fuzz::BorrowedContext {
 public:
  SharedContext(CallContext& shared, SharedStore& store)
      : BorrowedContext(shared, shared.results), own_(shared.results), store_(store) {
    for (std::size_t i = 0; i < own_.size(); ++i) results_[i] = &own_[i];
  }
  void MarkResult(std::int32_t /*index*/, std::int32_t /*value*/) override {}
  void* Service(std::int32_t number) override {
    return number == NUV_SERVICE_NAMED_DATA ? &store_ : nullptr;
  }

  std::string Answer(IXInstrPlugin& instruction) {
    std::string answer = std::to_string(static_cast<int>(instruction.Execute(this)));
    for (const CNuvObject& result : own_) answer += std::to_string(fuzz::Fingerprint(result));
    return answer;
  }

 private:
  std::vector<CNuvObject> own_;
  SharedStore& store_;
};

/// A call that all threads make, and its answer on one thread alone.
struct SharedCall {
  const CatalogueEntry* instruction;
  std::unique_ptr<CallContext> values;
  std::string answer;  ///< empty where it is the outer world's
};

std::vector<SharedCall> MakeCalls(const nuvhost::Catalogue& catalogue, nuvhost::Services& services,
                                  SharedStore& store) {
  std::vector<SharedCall> calls;
  std::mt19937_64 random(7);
  for (const CatalogueEntry& instruction : catalogue.Entries()) {
    const DescriptorRecord& descriptor = *instruction.descriptor;
    for (int round = RandomRounds(12); round > 0; --round) {
      std::vector<std::uint8_t> any(200);
      for (std::uint8_t& byte : any) byte = static_cast<std::uint8_t>(random());
      fuzz::Bytes bytes(any);
      auto values = std::make_unique<CallContext>(descriptor, services);
      for (CNuvObject& input : values->inputs) input = fuzz::AnyValue(bytes, input.GetType());
      SharedCall call{&instruction, std::move(values), ""};
      if (!nuvhost::TouchesOuterWorld(descriptor.identifier)) {
        call.answer = SharedContext(*call.values, store).Answer(*instruction.prototype);
      } else if (!fuzz::Confine(descriptor, *call.values)) {
        continue;
      }
      calls.push_back(std::move(call));
    }
  }
  return calls;
}

/// All there is to read in a descriptor, as a host does that shows it.
std::string Read(const DescriptorRecord& descriptor) {
  std::string text = std::string(descriptor.name) + descriptor.category + descriptor.description;
  for (const ParameterRecord& input : descriptor.inputs) {
    text += input.name + std::to_string(fuzz::Fingerprint(CNuvObject(input.default_value)));
  }
  for (const ResultRecord& result : descriptor.results) text += result.name;
  for (const ConstantRecord& constant : descriptor.constants) {
    text += std::to_string(fuzz::Fingerprint(CNuvObject(constant.default_value)));
    const auto* node = constant.choices.First();
    for (; node != nullptr; node = CChoiceMap::Next(node)) text += node->label.c_str();
  }
  return text;
}

class Threads : public testing::Test {
 protected:
  Threads() {
    CNuvLog::Instance().SetSink(
        [](void* count, LEVEL, const char*) { ++*static_cast<std::atomic<int>*>(count); },
        &logged_);
    fuzz::EnterSandbox();
    calls_ = MakeCalls(catalogue_, services_, store_);
  }

  /// Makes all calls on as many threads and checks the answers; `together` is called in front of
  /// each instruction.
  /// An object of IndexArray runs on one thread at a time.
  template <class Together>
  void MakeAllCalls(std::size_t threads, Together together) {
    std::atomic<std::size_t> executed = 0;
    const auto run = [&] {
      const CatalogueEntry* instruction = nullptr;
      for (const SharedCall& call : calls_) {
        if (std::exchange(instruction, call.instruction) != call.instruction) together();
        IXInstrPlugin& prototype = *call.instruction->prototype;
        IXInstrPlugin* const own = prototype.Create();
        SharedContext context(*call.values, store_);
        const std::string answer =
            context.Answer(call.instruction == index_array_ ? *own : prototype);
        if (!call.answer.empty()) {
          EXPECT_EQ(answer, call.answer) << "instruction " << call.instruction->index;
        }
        prototype.Destroy(own);
        ++executed;
      }
    };
    std::vector<std::jthread> running;
    while (running.size() < threads) running.emplace_back(run);
    running.clear();
    EXPECT_EQ(executed, threads * calls_.size());
  }

  const nuvhost::Catalogue catalogue_{nuvhost::DefaultPluginPath()};
  /// Found before anything reads or builds descriptors.
  const CatalogueEntry* const index_array_ = &catalogue_.Find("_Nuv_Array_CNArrMathIndexArray_");
  nuvhost::Services services_;
  SharedStore store_;
  std::atomic<int> logged_ = 0;
  std::vector<SharedCall> calls_;
};

TEST_F(Threads, EveryInstructionAnswersOnEightAsOnOne) {
  Meeting all;
  MakeAllCalls(kThreads, [&all] { all.Wait(); });
  EXPECT_GT(logged_, 0);
  EXPECT_EQ(store_.Stored(), 1) << "one table of stopwatches";
}

TEST_F(Threads, DescriptorsAreReadWhileInstructionsRun) {
  const std::jthread reading([this] {
    for (int round = 0; round < 20; ++round) {
      for (const CatalogueEntry& one : catalogue_.Entries()) {
        EXPECT_FALSE(Read(*one.prototype->GetDescriptor()).empty());
      }
    }
  });
  MakeAllCalls(2, [] {});
}

TEST_F(Threads, DescriptorsAreBuiltAgainWhileInstructionsRun) {
  const nuvhost::PluginLibrary library(nuvhost::DefaultPluginPath());
  const std::jthread building([&library] {
    for (int round = 0; round < 20; ++round) {
      EXPECT_EQ(library.Get().InitPlugins(), library.Get().GetPluginCount());
    }
  });
  MakeAllCalls(2, [] {});
}

}  // namespace

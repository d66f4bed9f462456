// Every allocation of every instruction fails, alone, with the next and with all that follow.

#include <random>
#include <span>

#include "nuvhost/library/outer_world.h"
#include "tests/fuzz/sandbox.h"
#include "tests/fuzz/values.h"
#include "tests/instr/table.h"
#include "tests/plugin/allocation_failure.h"

namespace {

using nuvhost::CallContext;

/// Values of a type, the same for the same seed.
CNuvObject Given(NUV_OBJ_TYPE type, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::uint8_t> any(200);
  for (std::uint8_t& byte : any) byte = static_cast<std::uint8_t>(random());
  fuzz::Bytes bytes(any);
  return fuzz::AnyValue(bytes, type);
}

bool IsEmptyArray(const CNuvObject& value) {
  return value.GetType() >= NUV_OBJ_BOOL_VECTOR && value == CNuvObject(value.GetType());
}

/// As JSON, in which a NaN equals itself.
std::vector<std::string> Texts(const std::vector<CNuvObject>& values) {
  std::vector<std::string> texts;
  for (const CNuvObject& value : values) texts.push_back(nuvhost::ToJson(value).dump());
  return texts;
}

/// What an instruction is called with, and what results hold before: a value of their type, or none
/// at all.
class Setting {
 public:
  Setting(const nuvhost::CatalogueEntry& instruction, unsigned seed, bool has_results)
      : prototype_(*instruction.prototype),
        descriptor_(*instruction.descriptor),
        reaches_out_(nuvhost::TouchesOuterWorld(descriptor_.identifier)) {
    for (std::size_t i = 0; i < descriptor_.inputs.Size(); ++i) {
      const NUV_OBJ_TYPE type = NuvValueType(descriptor_.inputs[i].type);
      inputs_.push_back(Given(type, seed + static_cast<unsigned>(i)));
    }
    for (int i = 0; descriptor_.repeatable != 0 && i < 4; ++i) inputs_.push_back(inputs_.back());
    for (const ResultRecord& result : descriptor_.results) {
      const NUV_OBJ_TYPE type = NuvValueType(result.type);
      before_.push_back(has_results ? Given(type, seed) : CNuvObject());
    }
    CallContext context(descriptor_, services_);
    Prepare(context);
    is_confined_ = !reaches_out_ || fuzz::Confine(descriptor_, context);
    if (!is_confined_) return;
    inputs_ = context.inputs;
    status_ = context.Execute(prototype_);
    messages_ = services_.Take().messages;
    after_ = Texts(context.results);
  }

  /// The context's own arrays of pointers, which it makes before it calls.
  static constexpr std::ptrdiff_t kOfTheContext = 3;

  /// Calls with allocations after so many failing; false where there are not so many.
  bool Fails(std::ptrdiff_t successes, std::ptrdiff_t failures, bool again = false) {
    if (!is_confined_) return false;
    SCOPED_TRACE(testing::Message() << "after " << successes << " allocations");
    const std::ptrdiff_t live = LiveAllocations();
    bool failed = false;
    {
      CallContext context(descriptor_, services_);
      Prepare(context);
      std::int32_t status = 0;
      {
        const FailingAllocation failure(kOfTheContext + successes, failures);
        status = context.Execute(prototype_);
        failed = failure.HasFailed();
      }
      if (failed) Judge(context, status);
      services_.Take();
    }
    const std::ptrdiff_t lost = LiveAllocations() - live;
    if (reaches_out_ || lost == 0) return failed;
    // A C++ runtime keeps what a module's first exception took; what leaks does so each time.
    if (!again) return Fails(successes, failures, true);
    ADD_FAILURE() << lost << " leaked";
    return failed;
  }

 private:
  void Prepare(CallContext& context) const {
    context.inputs = inputs_;
    context.results = before_;
    for (std::size_t i = 0; i < context.constants.size(); ++i) {
      if (descriptor_.constants[i].type == NUV_PARAM_BOOLEAN) context.constants[i] = true;
    }
  }

  void Judge(const CallContext& context, std::int32_t status) {
    EXPECT_EQ(Texts(context.inputs), Texts(inputs_)) << "an input was changed";
    const std::vector<std::string> results = Texts(context.results);
    bool none_is_new = true;
    for (std::size_t i = 0; i < results.size(); ++i) {
      none_is_new &= context.results[i] == before_[i] || IsEmptyArray(context.results[i]);
    }
    const bool went_through = status == status_ && (results == after_ || reaches_out_);
    EXPECT_TRUE(went_through || (status == 3 && none_is_new))
        << "status " << status << ", " << testing::PrintToString(results);
    const std::vector<nuvhost::Message> messages = services_.Take().messages;
    for (std::size_t i = 0; i < messages.size(); ++i) {
      ASSERT_LT(i, messages_.size());
      EXPECT_EQ(messages[i].source + messages[i].text, messages_[i].source + messages_[i].text);
    }
  }

  IXInstrPlugin& prototype_;
  const DescriptorRecord& descriptor_;
  bool reaches_out_;
  bool is_confined_ = false;
  nuvhost::Services services_;
  std::vector<CNuvObject> inputs_;
  std::vector<CNuvObject> before_;
  std::int32_t status_ = 0;
  std::vector<nuvhost::Message> messages_;
  std::vector<std::string> after_;
};

// The first of these tests: the others keep the library loaded.
TEST(Memory, WithoutItALibraryIsNotLoaded) {
  std::span<const std::ptrdiff_t> in_a_row(kInARow);
#if defined(_WIN32)
  in_a_row = in_a_row.first(2);  // for its first exception a module's C++ runtime needs memory
#endif
  std::size_t failures = 0;
  for (const std::ptrdiff_t failing : in_a_row) {
    bool failed = true;
    for (std::ptrdiff_t n = 0; failed; n += 1 + n / 30) {  // some of the last are left out
      SCOPED_TRACE(testing::Message() << failing << " after " << n << " allocations");
      const FailingAllocation failure(n, failing);
      try {
        const nuvhost::Catalogue catalogue(nuvhost::DefaultPluginPath());
        // The host may do without what it asked for, the plug-in may not.
        EXPECT_EQ(catalogue.Entries().size(), 263U);
      } catch (const std::exception&) {
        EXPECT_TRUE(failure.HasFailed());
      }
      failed = failure.HasFailed();
      failures += failed;
    }
  }
  EXPECT_GT(failures, 300U);
}

TEST(Memory, WithoutItAnInstructionFailsAndNoResultIsNew) {
  const nuvhost::Catalogue& catalogue =
      BuiltCatalogue();  // loaded before the environment is cleared
  fuzz::EnterSandbox();
  std::size_t failures = 0;
  for (const nuvhost::CatalogueEntry& instruction : catalogue.Entries()) {
    const std::string identifier = instruction.descriptor->identifier;
    for (unsigned seed = 1; seed <= 12; ++seed) {
      for (const bool has_results : {true, false}) {
        Setting setting(instruction, seed, has_results);
        for (const std::ptrdiff_t failing : kInARow) {
          SCOPED_TRACE(testing::Message()
                       << identifier << ", seed " << seed << (has_results ? "" : ", results empty")
                       << ", " << failing << " in a row");
          for (std::ptrdiff_t n = 0; setting.Fails(n, failing); ++n) ++failures;
        }
      }
    }
  }
  EXPECT_GT(failures, 5000U);
  RecordProperty("failures", static_cast<int>(failures));
}

/// Those that compute in memory of their own, and how many blocks of it they take at most.
std::ptrdiff_t WorkBlocks(std::string_view identifier) {
  constexpr std::pair<std::string_view, std::ptrdiff_t> kBlocks[] = {
      {"_CNArrSort_", 1},       {"_CNArrMathIndexArray_", 1},
      {"_CNArrMathSmooth_", 1}, {"_CNArrMathCorrelateCircular_", 1},
      {"_CPts2LnDistInf_", 1},  {"_CPArrSort_", 2},
      {"_CSArrDiff_", 5},       {"ArrDiff_", 4},
      {"_CPArrCluster1D_", 16}, {"Pt2Best", 60},  // as the host's geometry does
  };
  for (const auto& [part, blocks] : kBlocks) {
    if (identifier.find(part) != identifier.npos) return blocks;
  }
  return 0;
}

/// Texts that do not fit into the text object itself.
std::ptrdiff_t LongTexts(const CNuvObject& value) {
  const auto is_long = [](const char* text) { return std::string_view(text).size() > 15; };
  if (value.GetType() == NUV_OBJ_STRING) return is_long(static_cast<const char*>(value));
  const auto& texts = static_cast<const CNuvStringVector&>(value);
  return std::count_if(texts.GetStorage(), texts.GetStorage() + texts.Size(), is_long);
}

bool HasTexts(const DescriptorRecord& descriptor) {
  const auto is_text = [](const auto& parameter) {
    return parameter.type == NUV_PARAM_STRING || parameter.type == NUV_PARAM_STRING_ARRAY;
  };
  return std::any_of(descriptor.inputs.begin(), descriptor.inputs.end(), is_text) ||
         std::any_of(descriptor.results.begin(), descriptor.results.end(), is_text);
}

// A text is put together before it is the result's: its conversions, the text, and where it grows.
constexpr std::ptrdiff_t kBlocksOfALongText = 4;

TEST(Memory, OnlyResultsThatGrowAreAllocated) {
  for (const nuvhost::CatalogueEntry& instruction : BuiltCatalogue().Entries()) {
    const DescriptorRecord& descriptor = *instruction.descriptor;
    const std::string identifier = descriptor.identifier;
    const bool reaches_out = nuvhost::TouchesOuterWorld(identifier);
    // Paths, variables and what is logged go through the system, which allocates as it likes.
    if (reaches_out && HasTexts(descriptor)) continue;
    int counted = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
      SCOPED_TRACE(testing::Message() << identifier << ", seed " << seed);
      nuvhost::Services services;
      CallContext context(descriptor, services);
      for (std::size_t i = 0; i < context.inputs.size(); ++i) {
        const auto at = static_cast<unsigned>(i);
        context.inputs[i] = Given(NuvValueType(descriptor.inputs[i].type), seed * 37 + at);
        // Half of the calls get what most instructions accept: small numbers, numbers as texts.
        const NUV_OBJ_TYPE type = context.inputs[i].GetType();
        if (type == NUV_OBJ_DOUBLE && seed % 2 != 0) context.inputs[i] = 1.0 * (seed / 2 * at % 3);
        if (type == NUV_OBJ_STRING && seed % 4 == 1)
          context.inputs[i] = "12345678901234567890.5e-9";
      }
      for (unsigned i = 0; descriptor.repeatable != 0 && i < 4; ++i) {
        context.inputs.push_back(Given(context.inputs.back().GetType(), seed * 41 + i));
      }
      if (reaches_out && !fuzz::Confine(descriptor, context)) break;
      for (CNuvObject& constant : context.constants) constant = static_cast<int>(seed % 6);
      const std::vector<CNuvObject> fresh = context.results;
      const std::int32_t status = context.Execute(*instruction.prototype);
      // What is told to the user is allocated; what asks for a desktop may find none.
      if (status != 0 || !services.Take().messages.empty()) continue;

      ++counted;
      const bool has_long_input = std::ranges::any_of(context.inputs, LongTexts);
      context.has_services = false;  // the host records drawings
      std::ptrdiff_t most = WorkBlocks(identifier);
      std::ptrdiff_t most_new = 0;
      for (const CNuvObject& result : context.results) {
        const bool is_text = result.GetType() == NUV_OBJ_STRING;
        if (is_text && (LongTexts(result) || has_long_input)) most += kBlocksOfALongText;
        most_new += LongTexts(result) + (result.GetType() >= NUV_OBJ_BOOL_VECTOR ? 1 : 0);
      }
      context.results = fresh;
      for (const bool is_new : {true, false}) {
        const std::ptrdiff_t before = Allocations();
        context.Execute(*instruction.prototype);
        EXPECT_LE(Allocations() - before - Setting::kOfTheContext, most + is_new * most_new)
            << (is_new ? "new results" : "results that have their sizes");
      }
    }
    EXPECT_TRUE(counted > 0 || reaches_out) << identifier;
  }
}

}  // namespace

#include "plugin/formula_lib.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

#include "plugin/call.h"
#include "plugin/catalogue.h"
#include "tests/plugin/allocation_failure.h"

namespace {

TEST(FormulaLib, RegistrationWithoutMemoryReleasesWhatWasRegistered) {
  const std::ptrdiff_t before = LiveAllocations();
  std::ptrdiff_t successes = 0;
  for (bool registered = false; !registered; ++successes) {
    std::optional<CFormulaLib> library;
    const FailingAllocation failure(successes);
    try {
      library.emplace();
      registered = true;
      EXPECT_FALSE(failure.HasFailed());
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(failure.HasFailed());
    }
    if (!registered) {
      EXPECT_EQ(LiveAllocations(), before) << "after " << successes << " allocations";
    }
  }
  EXPECT_GT(successes, 40);
  EXPECT_EQ(LiveAllocations(), before);
}

TEST(FormulaLib, BuildingWithoutMemoryIsMadeUpForByTheNextBuild) {
  const std::ptrdiff_t before = LiveAllocations();
  CFormulaLib library;
  const std::ptrdiff_t registered = LiveAllocations();
  std::ptrdiff_t kept = 0;  // by C++ runtimes, of what a module's first exceptions took
  for (const std::ptrdiff_t failing : kInARow) {
    bool failed = true;
    for (std::ptrdiff_t successes = 0; failed; ++successes) {
      {
        const FailingAllocation failure(successes, failing);
        library.InitPlugins();
        failed = failure.HasFailed();
      }
      EXPECT_EQ(library.InitPlugins(), library.GetPluginCount());
      for (std::size_t i = 0; i < library.GetPluginCount(); ++i) {
        ASSERT_EQ(library.GetPlugins()[i]->GetDescriptor()->format, 17u);
        library.GetPlugins()[i]->ClearDescriptor();
      }
      if (failing != PTRDIFF_MAX) kept = LiveAllocations() - registered;
      ASSERT_EQ(LiveAllocations(), registered + kept) << "after " << successes << " allocations";
    }
  }
  library.ReleasePlugins();
  EXPECT_EQ(library.GetPluginCount(), 0u);
  library.DeletingDestructor(0);
  EXPECT_EQ(LiveAllocations(), before + kept);
}

TEST(FormulaLib, CreateWithoutMemoryGivesNull) {
  CFormulaLib library;
  IXInstrPlugin* prototype = library.GetPlugins()[0];
  {
    const FailingAllocation failure(0);
    EXPECT_EQ(prototype->Create(), nullptr);
  }
  IXInstrPlugin* created = prototype->Create();
  ASSERT_NE(created, nullptr);
  EXPECT_EQ(created->GetDescriptor(), prototype->GetDescriptor());
  prototype->Destroy(created);
  prototype->Destroy(nullptr);
}

TEST(Call, ATextResultHoldsUpToOneGibibyte) {
  EXPECT_NO_THROW(formula::CheckTextLength(std::size_t{1} << 30));
  EXPECT_THROW(formula::CheckTextLength((std::size_t{1} << 30) + 1), std::length_error);
}

}  // namespace

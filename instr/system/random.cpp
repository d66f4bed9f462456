// Random numbers of the C runtime, a sequence for each thread.

#include "platform/runtime.h"
#include "plugin/instruction.h"

namespace formula {

struct CSystemRandom final : Instruction<CSystemRandom> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "Random",
      .identifier = "_Nuv_System_CSystemRandom_",
      .help = 460192,
      .description = "Generates random number from [0..1)",
      .results = {Number("random")},
  };
  static Status Run(Call& call) { return call.Set(0, platform::Random() / 32768.0); }
};

struct CSystemRandomSeed final : Instruction<CSystemRandomSeed> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "Random Seed",
      .identifier = "_Nuv_System_CSystemRandomSeed_",
      .help = 460283,
      .description = "Seeds the random number generator",
      .constants = {{.name = "seed",
                     .description = "'Random' generator seed. 0=ignore, 1=reinitialize",
                     .has_range = true,
                     .minimum = 0,
                     .maximum = 32767}},
  };
  static Status Run(Call& call) {
    const std::int32_t seed = call.ConstantInteger(0);
    if (seed != 0) platform::SeedRandom(static_cast<std::uint32_t>(seed));
    return Status::kSuccess;
  }
};

template struct Instructions<CSystemRandom, CSystemRandomSeed>;

}  // namespace formula

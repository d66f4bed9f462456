// What Microsoft's C runtime keeps for a process: its random numbers and its environment.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// The runtime's random sequence, which each thread has of its own and which begins as if seeded
/// with 1.
void SeedRandom(std::uint32_t seed) noexcept;
/// The next number, from 0 to 32767.
int Random() noexcept;

/// All entries "NAME=value", in the runtime's order.
std::vector<std::string> Environment();
/// The value of a variable; none where there is no such variable.
std::optional<std::string> FindVariable(const char* name);
/// Carries out "NAME=value", parted at the first "="; an empty value removes the variable. False
/// where there is no "=" or no name before it.
bool AssignVariable(const std::string& assignment);

}  // namespace platform

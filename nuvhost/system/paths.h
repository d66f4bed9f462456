// Paths: the running program's, and any path as UTF-8 on every platform.
#pragma once

#include <filesystem>
#include <string>

namespace nuvhost {

/// The running program, and its folder.
std::filesystem::path ProgramPath();
std::filesystem::path ProgramFolder();

std::filesystem::path PathFromUtf8(const std::string& text);
std::string ToUtf8(const std::filesystem::path& path);

}  // namespace nuvhost

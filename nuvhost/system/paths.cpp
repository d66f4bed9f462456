#include "nuvhost/system/paths.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/auxv.h>

#include <system_error>
#endif

namespace nuvhost {

#if defined(_WIN32)

std::filesystem::path ProgramPath() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

#else

std::filesystem::path ProgramPath() {
  std::error_code no_proc;
  std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", no_proc);
  if (!no_proc) return path;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel hands an address over as a number.
  return std::filesystem::canonical(reinterpret_cast<const char*>(getauxval(AT_EXECFN)));
}

#endif

std::filesystem::path ProgramFolder() {
  return ProgramPath().parent_path();
}

std::filesystem::path PathFromUtf8(const std::string& text) {
  return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

std::string ToUtf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace nuvhost

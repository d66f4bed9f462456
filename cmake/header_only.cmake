# Header-only libraries from the system's include folder, for either compiler.
#
# The folder as a whole must not reach a cross compiler, so each library gets a folder in the
# build tree with a link to just its own headers.

function(formula_header_only target header)
  find_path(${target}_FOUND_IN ${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  set(folder ${PROJECT_BINARY_DIR}/header_only/${target})
  cmake_path(GET header PARENT_PATH name)
  file(MAKE_DIRECTORY ${folder})
  file(CREATE_LINK ${${target}_FOUND_IN}/${name} ${folder}/${name} SYMBOLIC)
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${folder})
endfunction()

formula_header_only(nlohmann_json nlohmann/json.hpp)
formula_header_only(cli11 CLI/CLI.hpp)
formula_header_only(utfcpp utf8cpp/utf8.h)
formula_header_only(fmt fmt/format.h)
target_compile_definitions(fmt INTERFACE FMT_HEADER_ONLY)

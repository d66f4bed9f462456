# What every target is compiled and linked with: the target formula_options.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# -O2 in every optimised build: the kernels that want more say so.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")

set(processor_options)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  # As on x86-64; and no word on what GCC 10.1 changed in passing parameters.
  set(processor_options -fsigned-char -Wno-psabi)
endif()

add_library(formula_options INTERFACE)
target_include_directories(formula_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(formula_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
  # The contract fixes results to the last bit: no fused multiply-add, on any processor.
  -ffp-contract=off
  ${processor_options}
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
if(CMAKE_UNITY_BUILD)  # A neighbour's name is no name around it.
  target_compile_options(formula_options INTERFACE -Wno-shadow)
endif()
if(FORMULA_WARNINGS_AS_ERRORS)
  target_compile_options(formula_options INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # A unique symbol would keep the plug-in loaded behind the host's back.
  target_compile_options(formula_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fno-gnu-unique>)
else()
  # Some fields are there for the layout alone, some pragmas for GCC alone.
  target_compile_options(formula_options INTERFACE -Wno-unused-private-field -Wno-unknown-pragmas)
endif()

if(FORMULA_SANITIZERS)
  # A host built by another compiler hands us objects without this compiler's type information.
  target_compile_options(formula_options INTERFACE
    -fsanitize=${FORMULA_SANITIZERS} -fno-sanitize=vptr -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(formula_options INTERFACE -fsanitize=${FORMULA_SANITIZERS})
endif()

# What makes a fault in memory end the program before it can be turned to use; in optimised builds,
# which are those that are handed out. tests/abi/hardening.py holds the built files against it.
set(optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
set(hardening -fstack-protector-strong)
if(WIN32)
  target_link_options(formula_options INTERFACE
    -fstack-protector-strong -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat)
else()
  list(APPEND hardening -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
    list(APPEND hardening -fcf-protection=full)
    target_link_options(formula_options INTERFACE -Wl,-z,shstk)
  elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64|ARM64)$")
    list(APPEND hardening -mbranch-protection=standard)
  endif()
endif()
target_compile_options(formula_options INTERFACE "$<${optimised}:${hardening}>")
target_compile_definitions(formula_options INTERFACE $<${optimised}:_FORTIFY_SOURCE=2>)

if(WIN32)
  # Each module carries its C++ runtime, and the same sources link to the same bytes anywhere.
  target_link_options(formula_options INTERFACE
    -static -Wl,--no-insert-timestamp -Wl,--disable-auto-image-base)
else()
  # clang's sanitizers stand in the program alone, where the libraries find them at run time.
  if(NOT (FORMULA_SANITIZERS AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang"))
    target_link_options(formula_options INTERFACE -Wl,-z,defs)
  endif()
  target_link_options(formula_options INTERFACE -Wl,-z,relro -Wl,-z,now)
endif()

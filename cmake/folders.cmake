# Where things are installed: GNU's folders, on Windows all that runs together in bin/.

if(NOT CMAKE_INSTALL_DOCDIR)
  set(CMAKE_INSTALL_DOCDIR share/doc/nuvformula)
endif()
include(GNUInstallDirs)
foreach(folder BINDIR LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${folder}}")
    message(FATAL_ERROR "CMAKE_INSTALL_${folder} is ${CMAKE_INSTALL_${folder}}; give it relative to "
      "the prefix, so that what is installed can be moved")
  endif()
endforeach()

set(FORMULA_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/nuvformula)
set(FORMULA_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/NuvFormula)
set(FORMULA_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(FORMULA_PLUGIN_DIR ${CMAKE_INSTALL_LIBDIR}/nuvformula)
if(WIN32)
  set(FORMULA_PLUGIN_DIR ${CMAKE_INSTALL_BINDIR})
endif()

# How to go from one of these folders to another.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_BINDIR}
  OUTPUT_VARIABLE FORMULA_BIN_TO_LIB)
cmake_path(RELATIVE_PATH FORMULA_PLUGIN_DIR BASE_DIRECTORY ${CMAKE_INSTALL_BINDIR}
  OUTPUT_VARIABLE FORMULA_BIN_TO_PLUGIN)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY ${FORMULA_PLUGIN_DIR}
  OUTPUT_VARIABLE FORMULA_PLUGIN_TO_LIB)
string(REGEX REPLACE "[^/]+" ".." FORMULA_PKGCONFIG_TO_PREFIX ${FORMULA_PKGCONFIG_DIR})

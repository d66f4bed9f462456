# The libraries of a host of one's own, in the folder FORMULA_HOST, in place of reference_host/.

foreach(library NuvGeometry NuvLog NuvObject NuvOs NuvSetting NuvTypes)
  find_library(${library}_FILE ${library} PATHS ${FORMULA_HOST} PATH_SUFFIXES lib bin
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  if(NOT ${library}_FILE)
    message(FATAL_ERROR "FORMULA_HOST names ${FORMULA_HOST}, which has no library ${library} in lib/ or "
      "bin/; docs/hosting.md tells what a host's libraries are")
  endif()
  add_library(${library} UNKNOWN IMPORTED)
  set_target_properties(${library} PROPERTIES IMPORTED_LOCATION ${${library}_FILE})
endforeach()
# Its own headers come before those of this tree, which stand in for what it has not.
target_include_directories(formula_options BEFORE INTERFACE ${FORMULA_HOST}/include/nuvformula)

# The version, stated in the project() line alone, as programs and files tell it.

if(WIN32)
  enable_language(RC)
endif()

# Compiles nuvhost's version into a target. The commit is looked up in each build, so that it is
# never the one of yesterday.
function(formula_version_source target)
  set(source ${PROJECT_BINARY_DIR}/${target}_version.cpp)
  add_custom_target(${target}_version BYPRODUCTS ${source}
    COMMAND ${CMAKE_COMMAND} -DVERSION=${PROJECT_VERSION} -DROOT=${PROJECT_SOURCE_DIR}
      -DSOURCE=${source} -P ${PROJECT_SOURCE_DIR}/cmake/write_version.cmake
    COMMENT "Looking up the version" VERBATIM)
  target_sources(${target} PRIVATE ${source})
  add_dependencies(${target} ${target}_version)
endfunction()

# Gives a program or a library the version that Windows shows among its properties.
function(formula_file_version target description)
  if(NOT WIN32)
    return()
  endif()
  set(FILE_DESCRIPTION "${description}")
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    set(FILE_NAME ${target}.exe)
    set(FILE_TYPE VFT_APP)
  else()
    set(FILE_NAME ${target}.dll)
    set(FILE_TYPE VFT_DLL)
  endif()
  string(REPLACE . , VERSION_NUMBERS ${PROJECT_VERSION})
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
endfunction()

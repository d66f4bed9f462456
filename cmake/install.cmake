# What `cmake --install` puts where: programs, libraries, headers, documentation.

include(CMakePackageConfigHelpers)

set(host_libraries NuvGeometry NuvLog NuvObject NuvOs NuvSetting NuvTypes)

# All that a host or a plug-in links: the headers of host/ and the host's libraries.
add_library(nuv_contract INTERFACE)
set_target_properties(nuv_contract PROPERTIES EXPORT_NAME Contract)
target_link_libraries(nuv_contract INTERFACE ${host_libraries})
foreach(library ${host_libraries})
  target_include_directories(${library} INTERFACE $<INSTALL_INTERFACE:${FORMULA_INCLUDE_DIR}>)
  target_compile_features(${library} INTERFACE cxx_std_20)
endforeach()

# Everything finds what it needs from its own place, in any folder. The plug-in also finds the
# host's libraries where it is put beside them.
set_target_properties(nuvhost PROPERTIES INSTALL_RPATH "$ORIGIN/${FORMULA_BIN_TO_LIB}")
set_target_properties(${host_libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(NuvFormula PROPERTIES EXPORT_NAME Plugin
  INSTALL_RPATH "$ORIGIN;$ORIGIN/${FORMULA_PLUGIN_TO_LIB}")

install(TARGETS nuvhost nuv_contract ${host_libraries} EXPORT NuvFormulaTargets)
install(TARGETS NuvFormula EXPORT NuvFormulaTargets LIBRARY DESTINATION ${FORMULA_PLUGIN_DIR})
install(EXPORT NuvFormulaTargets NAMESPACE NuvFormula:: DESTINATION ${FORMULA_CMAKE_DIR})
install(DIRECTORY host/ DESTINATION ${FORMULA_INCLUDE_DIR}/host FILES_MATCHING PATTERN *.h)

set(package ${PROJECT_BINARY_DIR}/package)
configure_package_config_file(cmake/NuvFormulaConfig.cmake.in ${package}/NuvFormulaConfig.cmake
  INSTALL_DESTINATION ${FORMULA_CMAKE_DIR}
  NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${package}/NuvFormulaConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${package}/NuvFormulaConfig.cmake ${package}/NuvFormulaConfigVersion.cmake
  DESTINATION ${FORMULA_CMAKE_DIR})

if(WIN32)  # by their files' names, so that -static does not look past them
  list(TRANSFORM host_libraries REPLACE "(.+)" "-l:lib\\1.dll.a" OUTPUT_VARIABLE PC_LIBS)
else()
  list(TRANSFORM host_libraries PREPEND -l OUTPUT_VARIABLE PC_LIBS)
endif()
list(JOIN PC_LIBS " " PC_LIBS)
set(PC_PLUGIN ${FORMULA_PLUGIN_DIR}/NuvFormula${CMAKE_SHARED_MODULE_SUFFIX})
configure_file(cmake/nuvformula.pc.in ${package}/nuvformula.pc @ONLY)
install(FILES ${package}/nuvformula.pc DESTINATION ${FORMULA_PKGCONFIG_DIR})

# Side by side as in the sources, so that links between the pages hold.
install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
  PATTERN site EXCLUDE PATTERN __pycache__ EXCLUDE)

# Writes the version as a source of nuvhost, if it changed:
# cmake -DVERSION=1.0.0 -DROOT=FOLDER -DSOURCE=FILE -P this file.

# An archive that git makes carries its commit here; a checkout asks git; neither is needed.
set(commit "$Format:%H$")
if(NOT commit MATCHES "^[0-9a-f]+$")
  set(commit "")
  if(EXISTS ${ROOT}/.git)
    execute_process(COMMAND git --no-optional-locks -C ${ROOT} describe --always --dirty
        --abbrev=40 --exclude=*
      OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endif()
endif()
if(commit MATCHES "^([0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f])[0-9a-f]*(-dirty)?$")
  string(REPLACE -dirty ", modified" state "${CMAKE_MATCH_2}")
  string(APPEND VERSION " (${CMAKE_MATCH_1}${state})")
endif()

file(CONFIGURE OUTPUT ${SOURCE} @ONLY CONTENT [[
#include "nuvhost/commands/version.h"

namespace nuvhost {

const char* const kVersion = "@VERSION@";

}  // namespace nuvhost
]])

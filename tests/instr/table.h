// Instruction calls over the built plug-in, as a host makes them.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "nuvhost/commands/exec_session.h"

/// The plug-in beside the test program.
inline const nuvhost::Catalogue& BuiltCatalogue() {
  static const nuvhost::Catalogue catalogue(nuvhost::DefaultPluginPath());
  return catalogue;
}

inline nuvhost::Json Exec(nuvhost::ExecSession& session, const std::string& request) {
  return nuvhost::Json::parse(session.Answer(request));
}

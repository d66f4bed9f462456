// Instruction calls as table rows, run over the built plug-in as a host runs them.
#pragma once

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "nuvhost/commands/exec_session.h"

/// A request in which [x y] stands for a point and (a d) for a line.
inline std::string WithFigures(const std::string& text) {
  const std::string pair = R"((-?[0-9.e+-]+|"[A-Za-z-]+") (-?[0-9.e+-]+|"[A-Za-z-]+"))";
  static const std::regex point("\\[" + pair + "\\]");
  static const std::regex line("\\(" + pair + "\\)");
  const std::string points = std::regex_replace(text, point, R"({"x":$1,"y":$2})");
  return std::regex_replace(points, line, R"({"a":$1,"d":$2})");
}

/// One call. `inputs` and `outputs` are JSON lists; `outputs` is compared to the letter, so that
/// the sign of a zero counts. A failure has its `message`, "source|text", or "" for a silent one,
/// and must leave the results as they were.
struct InstructionRow {
  const char* identifier;
  const char* inputs;
  const char* outputs;
  bool fails = false;
  const char* message = "";
};

inline InstructionRow Fails(const char* identifier, const char* inputs, const char* message = "") {
  return {identifier, inputs, nullptr, true, message};
}

/// The plug-in beside the test program.
inline const nuvhost::Catalogue& BuiltCatalogue() {
  static const nuvhost::Catalogue catalogue(nuvhost::DefaultPluginPath());
  return catalogue;
}

inline nuvhost::Json Exec(nuvhost::ExecSession& session, const std::string& request) {
  return nuvhost::Json::parse(session.Answer(request));
}

template <class Rows>
void CheckRows(const Rows& rows) {
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const InstructionRow& row : rows) {
    SCOPED_TRACE(std::string(row.identifier) + " " + row.inputs);
    const std::string call =
        std::string(R"({"instr":")") + row.identifier + R"(","in":)" + WithFigures(row.inputs);
    const nuvhost::Json answer = Exec(session, call + R"(,"prev":[])" + "}");
    ASSERT_FALSE(answer.contains("error")) << answer.dump();
    EXPECT_EQ(answer["status"], row.fails ? 3 : 0);
    if (!row.fails) {
      EXPECT_EQ(answer["out"].dump(), WithFigures(row.outputs));
      EXPECT_FALSE(answer.contains("messages")) << answer.dump();
      continue;
    }
    std::string message;
    if (answer.contains("messages")) {
      const nuvhost::Json& reported = answer["messages"][0];
      EXPECT_EQ(reported["severity"], 2);
      message = reported["source"].get<std::string>() + "|" + reported["text"].get<std::string>();
    }
    EXPECT_EQ(message, row.message);
    const bool boolean = answer["out"][0].is_boolean();
    const nuvhost::Json again =
        Exec(session, call + R"(,"prev":[)" + (boolean ? "true" : "7.5") + "]}");
    EXPECT_EQ(again["out"][0].dump(), boolean ? "true" : "7.5") << "a failure wrote its result";
  }
}

/// A request line of `nuvhost exec` and its answer, the whole of it.
struct TranscriptRow {
  const char* request;
  const char* answer;
};

/// Asks in order in one session. Numbers are compared to the letter.
template <class Rows>
void CheckTranscript(const Rows& rows) {
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const TranscriptRow& row : rows) {
    EXPECT_EQ(Exec(session, WithFigures(row.request)).dump(),
              nuvhost::Json::parse(WithFigures(row.answer)).dump())
        << row.request;
  }
}

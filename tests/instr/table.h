// Instruction calls as table rows, run over the built plug-in as a host runs them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "nuvhost/commands/exec_session.h"

/// Whether a word is a number as requests write it, such as -0.5 or "NaN".
inline bool IsNumber(std::string_view word) {
  const bool quoted = word.size() > 2 && word.front() == '"' && word.back() == '"';
  if (quoted) word = word.substr(1, word.size() - 2);
  const char* allowed =
      quoted ? "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ-" : "0123456789.e+-";
  return !word.empty() && word.find_first_not_of(allowed) == word.npos;
}

/// A request in which [x y] stands for a point and (a d) for a line.
inline std::string WithFigures(std::string_view text) {
  std::string request;
  while (!text.empty()) {
    const bool is_point = text[0] == '[';
    const std::size_t end = text.find(is_point ? ']' : ')');
    const std::size_t blank = text.find(' ');
    if ((is_point || text[0] == '(') && blank < end && end != text.npos &&
        IsNumber(text.substr(1, blank - 1)) && IsNumber(text.substr(blank + 1, end - blank - 1))) {
      request += is_point ? R"({"x":)" : R"({"a":)";
      request += text.substr(1, blank - 1);
      request += is_point ? R"(,"y":)" : R"(,"d":)";
      request += text.substr(blank + 1, end - blank - 1);
      request += '}';
      text.remove_prefix(end + 1);
    } else {
      request += text[0];
      text.remove_prefix(1);
    }
  }
  return request;
}

/// The plug-in beside the test program.
inline const nuvhost::Catalogue& BuiltCatalogue() {
  static const nuvhost::Catalogue catalogue(nuvhost::DefaultPluginPath());
  return catalogue;
}

inline nuvhost::Json Exec(nuvhost::ExecSession& session, const std::string& request) {
  return nuvhost::Json::parse(session.Answer(request));
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

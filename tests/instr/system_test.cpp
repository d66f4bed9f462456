// The system's instructions: clock, environment, random numbers, log.

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <thread>

#include "nuvhost/system/paths.h"
#include "tests/instr/table.h"

#if !defined(_WIN32)
#include <unistd.h>

#include <csignal>
#endif

namespace {

using nuvhost::Json;
using Values = std::vector<Json>;

/// A session in which the system's instructions go by the end of their identifier.
class SystemCalls : public testing::Test {
 protected:
  Json Ask(const std::string& identifier, const Values& inputs = {}, const Values& constants = {}) {
    return Json::parse(
        session_->Answer(Json{{"instr", identifier}, {"in", inputs}, {"const", constants}}.dump()));
  }
  Json Do(const char* name, const Values& inputs = {}, const Values& constants = {}) {
    const Json answer = Ask("_Nuv_System_C" + std::string(name) + "_", inputs, constants);
    EXPECT_EQ(answer["status"], 0) << answer.dump();
    EXPECT_FALSE(answer.contains("messages")) << answer.dump();
    return answer["out"].empty() ? Json() : answer["out"][0];
  }
  /// Fails without a word and leaves the results alone.
  void FailsSilently(const char* name, const Values& inputs, const Values& constants) {
    const Json answer = Ask("_Nuv_System_C" + std::string(name) + "_", inputs, constants);
    EXPECT_EQ(answer["status"], 3) << answer.dump();
    EXPECT_FALSE(answer.contains("messages")) << answer.dump();
  }
  double Clock() { return Ask("_GetMiliSecCount_")["out"][0]; }

  std::optional<nuvhost::ExecSession> session_{BuiltCatalogue()};
};

TEST_F(SystemCalls, StopwatchesTellTheTimeSinceTheirLastStart) {
  EXPECT_EQ(Do("SystemStopwatchStop", {}, {3}), 0);
  Do("SystemStopwatchStart", {}, {3});
  Do("Sleep", {30});
  const double before_start = Clock();
  Do("SystemStopwatchStart", {}, {3});
  const double after_start = Clock();
  EXPECT_EQ(Do("SystemStopwatchStop", {}, {255}), 0);
  Do("Sleep", {20.9});
  const double before_stop = Clock();
  const double elapsed = Do("SystemStopwatchStop", {}, {3});
  EXPECT_GE(elapsed, before_stop - after_start);
  EXPECT_LE(elapsed, Clock() - before_start);
  EXPECT_GE(before_stop - after_start, 19.0);  // the system's clock may tick coarsely
  EXPECT_EQ(Do("SystemStopwatchStop", {}, {3}), 0);
  const double difference = Do("GetTimeDiff", {before_stop});
  EXPECT_GE(difference, 0.0);
  EXPECT_LE(difference, Clock() - before_stop);
}

TEST_F(SystemCalls, StopwatchesShareOneTableInTheNamedData) {
  session_.reset();
  nuvhost::Services services;
  const auto execute = [&](const char* identifier, double index) {
    const nuvhost::CatalogueEntry& instruction = *BuiltCatalogue().FindIdentifier(identifier);
    nuvhost::CallContext context(*instruction.descriptor, services);
    context.constants[0] = index;
    return context.Execute(*instruction.prototype);
  };
  auto& store = *static_cast<IXNamedDataStore*>(services.Find(NUV_SERVICE_NAMED_DATA));
  EXPECT_EQ(execute("_Nuv_System_CSystemStopwatchStop_", 0), 0);
  auto* table = static_cast<double*>(store.LookUp("SystemTimers256"));
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(execute("_Nuv_System_CSystemStopwatchStart_", 255), 0);
  EXPECT_EQ(store.LookUp("SystemTimers256"), table);
  for (int i = 0; i < 255; ++i) EXPECT_EQ(table[i], 0.0);
  EXPECT_NE(table[255], 0.0);
  EXPECT_EQ(execute("_Nuv_System_CSystemStopwatchStop_", 255), 0);
  EXPECT_EQ(table[255], 0.0);
}

// Without the named data there are no stopwatches; what is only reported is dropped.
TEST_F(SystemCalls, AHostWithoutServicesHearsNothing) {
  nuvhost::Services services;
  for (const auto& [name, status] : {std::pair("SystemStopwatchStart", 3),
                                     {"SystemStopwatchStop", 3},
                                     {"SystemGenerateProgramEvent", 0},
                                     {"FolderDelete", 0}}) {
    const nuvhost::CatalogueEntry& instruction =
        BuiltCatalogue().Find(std::string("_Nuv_System_C") + name + "_");
    nuvhost::CallContext context(*instruction.descriptor, services);
    context.has_services = false;
    for (CNuvObject& input : context.inputs) input = "no folder of that name";
    EXPECT_EQ(context.Execute(*instruction.prototype), status) << name;
  }
}

TEST_F(SystemCalls, SleepTakesTheLow32Bits) {
  const double start = Clock();
  for (const double low_bits : {0.0, 4294967297.0, -4294967295.0, double{NAN}, 1e300}) {
    Do("Sleep", {nuvhost::NumberToJson(low_bits)});
  }
  EXPECT_LT(Clock() - start, 60000);
#if !defined(_WIN32)
  EXPECT_EXIT(
      {
        alarm(1);
        Do("Sleep", {-1});
      },
      testing::KilledBySignal(SIGALRM), "");
#endif
}

/// The local time as the C runtime shows it, asked until it stands still around a call.
std::string LocalTime(const char* format) {
  const std::time_t now = std::time(nullptr);
  char text[32];
  std::strftime(text, sizeof text, format, std::localtime(&now));
  return text;
}

TEST_F(SystemCalls, DateAndTimeAreLocal) {
  struct {
    const char* name;
    const char* picture;
    const char* format;
  } const rows[] = {{"GetDate", nullptr, "%d/%m/%y"},
                    {"GetTime", nullptr, "%H:%M:%S"},
                    {"GetDateFormat", "'at' yyyy-MM-dd", "at %Y-%m-%d"},
                    {"GetTimeFormat", "hh.mm.ss", "%I.%M.%S"}};
  for (const auto& row : rows) {
    std::string before;
    Json shown;
    do {
      before = LocalTime(row.format);
      shown = Do(row.name, row.picture == nullptr ? Values() : Values{row.picture});
    } while (before != LocalTime(row.format));
    EXPECT_EQ(shown, before) << row.name;
  }
  EXPECT_EQ(Do("GetDateFormat", {""}), "");
  EXPECT_EQ(Do("GetTimeFormat", {"\u00E4 'h"}), "\u00E4 h");
#if defined(_WIN32)
  // The one thing that the system rejects: a text too long for it.
  FailsSilently("GetDateFormat", {std::string(3000, 'x')}, {});
  FailsSilently("GetTimeFormat", {std::string(3000, 'x')}, {});
#endif
}

TEST_F(SystemCalls, EnvironmentIsTheProcesss) {
  const char* name = "NUV_SYSTEM_TEST";
  EXPECT_EQ(Do("GetEnv", {name}), "Not found");
  Do("SetEnv", {name, "bar %s"});
  EXPECT_EQ(Do("GetEnv", {name}), "bar %s");
  const Json entries = Do("GetEnvVars");
  const Json names = Do("GetEnvNames");
  ASSERT_EQ(entries.size(), names.size());
  int found = 0;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string entry = entries[i];
    EXPECT_EQ(names[i], entry.substr(0, entry.find('=')));
    found += entry == "NUV_SYSTEM_TEST=bar %s" ? 1 : 0;
  }
  EXPECT_EQ(found, 1);

  Do("SetEnv", {std::string(name) + "=a", "b"});
  EXPECT_EQ(Do("GetEnv", {name}), "a=b");
  Do("SetEnv", {name, ""});
  EXPECT_EQ(Do("GetEnv", {name}), "Not found");
  EXPECT_EQ(std::getenv(name), nullptr);
}

#if !defined(_WIN32)
TEST_F(SystemCalls, OddEnvironments) {
  char** const kept = environ;
  char entries[][8] = {"=C:=x", "A=B=C", "bare", "E="};
  char* odd[] = {entries[0], entries[1], entries[2], entries[3], nullptr};
  environ = odd;
  EXPECT_EQ(Do("GetEnvNames"), Json({"", "A", "", "E"}));
  EXPECT_EQ(Do("GetEnvVars"), Json({"=C:=x", "A=B=C", "bare", "E="}));
  EXPECT_EQ(Do("GetEnv", {"E"}), "Not found");
  environ = odd + 4;
  const char* request = R"({"instr": "_Nuv_System_CGetEnvNames_", "prev": [["as before"]]})";
  EXPECT_EQ(Exec(*session_, request)["out"], Json::parse(R"([["as before"]])"));
  environ = kept;
}
#endif

TEST_F(SystemCalls, RandomNumbersAreTheRuntimes) {
  const auto draw = [this] { return Do("SystemRandom").get<double>() * 32768.0; };
  for (int round = 0; round < 2; ++round) {
    for (const int expected : {41, 18467, 6334}) EXPECT_EQ(draw(), expected);
    Do("SystemRandomSeed", {}, {0});
    for (const int expected : {26500, 19169}) EXPECT_EQ(draw(), expected);
    Do("SystemRandomSeed", {}, {1});
  }
  Do("SystemRandomSeed", {}, {32767});
  const double first = draw();
  std::thread([&] {
    EXPECT_EQ(draw(), 41);  // each thread begins anew
    Do("SystemRandomSeed", {}, {5});
  }).join();
  const double second = draw();
  Do("SystemRandomSeed", {}, {32767});
  EXPECT_EQ(draw(), first);
  EXPECT_EQ(draw(), second);
}

TEST_F(SystemCalls, DiskSpaceIsTheDisks) {
  const std::filesystem::path folder = std::filesystem::current_path();
  const auto total = static_cast<double>(std::filesystem::space(folder).capacity);
  for (int unit = 0; unit < 4; ++unit) {
    for (const std::string& disk : {std::string(), nuvhost::ToUtf8(folder)}) {
      const Json out = Ask("_Nuv_System_CDiskSpace_", {disk}, {unit})["out"];
      EXPECT_EQ(out[1], total / std::pow(1024.0, unit));
      EXPECT_TRUE(out[0] > 0.0 && out[0] <= out[1]) << out;
      EXPECT_EQ(out[2], out[0].get<double>() / out[1].get<double>() * 100.0);
    }
  }
}

}  // namespace

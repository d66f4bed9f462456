// The instructions that touch the outer world, which arbitrary values must not reach.
#pragma once

#include <algorithm>
#include <string_view>

namespace nuvhost {

/// By their identifiers: what acts on files, dialogs, keys, the environment or time, or answers by
/// chance.
inline constexpr std::string_view kOuterWorld[] = {
    "_GetMiliSecCount_",
    "_Nuv_System_CGetTimeDiff_",
    "_Nuv_System_CGetDate_",
    "_Nuv_System_CGetTime_",
    "_Nuv_System_CGetDateFormat_",
    "_Nuv_System_CGetTimeFormat_",
    "_Nuv_System_CSleep_",
    "_Nuv_System_CGetEnvVars_",
    "_Nuv_System_CGetEnvNames_",
    "_Nuv_System_CGetEnv_",
    "_Nuv_System_CSetEnv_",
    "_Nuv_System_CFileExists_",
    "_Nuv_System_CSystemBeep_",
    "_Nuv_System_CSystemRandom_",
    "_Nuv_System_CSystemRandomSeed_",
    "_Nuv_System_CSystemMsgBox_",
    "_Nuv_System_CSystemMsgBeep_",
    "_Nuv_System_CSystemGenerateProgramEvent_",
    "_Nuv_System_CSystemStopwatchStart_",
    "_Nuv_System_CSystemStopwatchStop_",
    "_Nuv_System_CFileDelete_",
    "_Nuv_System_CFolderCreate_",
    "_Nuv_System_CFolderDelete_",
    "_Nuv_System_CFileCopy_",
    "_Nuv_System_CFileMove_",
    "_Nuv_System_CDiskSpace_",
    "_Nuv_System_CLog_",
    "_Nuv_TestOneKey_",
    "_Nuv_TestOneKeyStr_",
    "_Nuv_TestAnyChar_",
};

constexpr bool TouchesOuterWorld(std::string_view identifier) {
  return std::ranges::find(kOuterWorld, identifier) != std::end(kOuterWorld);
}

}  // namespace nuvhost

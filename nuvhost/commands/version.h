// The version of this program: "1.0.0", with the commit behind it in brackets where it is known.
#pragma once

namespace nuvhost {

extern const char* const kVersion;

}  // namespace nuvhost

#include "nuvhost/library/catalogue.h"

#include <gtest/gtest.h>

#include "nuvhost/error.h"
#include "nuvhost/library/plugin_library.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

const Catalogue& Built() {
  static const Catalogue catalogue(DefaultPluginPath());
  return catalogue;
}

/// What a wrong name is answered with.
std::string Complaint(const std::string& name) {
  try {
    Built().Find(name);
  } catch (const UserError& error) {
    return error.what();
  }
  return "found";
}

TEST(Catalogue, AnswersNames) {
  // Where several share a name, each has another that finds it.
  for (const CatalogueEntry& one : Built().Entries()) {
    const std::string name = one.descriptor->name;
    EXPECT_EQ(&Built().Find(one.descriptor->category + (": " + name)), &one);
    if (Complaint(name) == "found") continue;
    EXPECT_NE(Complaint(name).find(
                  '"' + (one.descriptor->category + (": " + NameFromText(name.c_str()))) +
                  "\" or " + one.descriptor->identifier),
              std::string::npos);
  }
  EXPECT_EQ(Complaint("no such thing at all"), R"(no instruction "no such thing at all")");
}

}  // namespace
}  // namespace nuvhost

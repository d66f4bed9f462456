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
  EXPECT_STREQ(Built().Find("Divide").descriptor->identifier, "_Nuv_Numeric_DivideNumbers_");
  EXPECT_STREQ(Built().Find("Divide  ").descriptor->name, "Divide");
  EXPECT_STREQ(Built().Find("_Nuv_Default_CCpArr_").descriptor->name, "CpArr");
  EXPECT_NE(Complaint("Divde").find(R"("Divide")"), std::string::npos);
  EXPECT_NE(Complaint("_Nuv_Numeric_CCpArr_").find("did you mean"), std::string::npos);
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
  EXPECT_NE(Complaint("Add").find("several instructions are named \"Add\""), std::string::npos);
  EXPECT_EQ(Complaint("no such thing at all"), R"(no instruction "no such thing at all")");
}

TEST(Catalogue, FindsParametersByNameOrPosition) {
  const DescriptorRecord& min2 = *Built().Find("Min2").descriptor;
  EXPECT_EQ(FindInput(min2, "1"), 1u);
  EXPECT_THROW(FindInput(min2, "number"), UserError);  // both bear that name
  EXPECT_THROW(FindInput(min2, "2"), UserError);
  EXPECT_EQ(FindResult(*Built().Find("MinArr").descriptor, "idx"), 1u);
  EXPECT_THROW(FindConstant(min2, "x"), UserError);
}

TEST(Catalogue, RefusesWhatIsNoPlugin) {
  EXPECT_THROW(PluginLibrary(ProgramFolder() / "missing.so"), UserError);
#if defined(_WIN32)
  EXPECT_THROW(PluginLibrary(ProgramFolder() / "NuvTypes.dll"), UserError);
#else
  EXPECT_THROW(PluginLibrary(ProgramFolder() / "libNuvTypes.so"), UserError);
#endif
}

}  // namespace
}  // namespace nuvhost

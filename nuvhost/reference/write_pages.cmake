# Writes Markdown files as a source of nuvhost: cmake -DPAGES=FILE;... -DSOURCE=FILE -P this file.
#
# Each section is a literal of its own, so that none grows beyond what compilers take.
set(arrays "")
set(rows "")
set(count 0)
foreach(page ${PAGES})
  file(READ ${page} text)
  string(REPLACE "\n## " "\n)entry\",\n    R\"entry(## " text "${text}")
  get_filename_component(name ${page} NAME)
  string(APPEND arrays
    "constexpr std::string_view kSections${count}[] = {\n    R\"entry(${text})entry\"};\n")
  string(APPEND rows "    Page{\"${name}\", kSections${count}},\n")
  math(EXPR count "${count} + 1")
endforeach()
file(WRITE ${SOURCE} "// Written from docs/instructions by write_pages.cmake.
#include \"nuvhost/reference/entries.h\"

#include <array>

namespace nuvhost {
namespace {

${arrays}
constexpr std::array<Page, ${count}> kPages = {
${rows}};

}  // namespace

std::span<const Page> Pages() {
  return kPages;
}

}  // namespace nuvhost
")

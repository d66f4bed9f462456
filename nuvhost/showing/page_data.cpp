#include "nuvhost/showing/page_data.h"

#include <fmt/format.h>

#include <algorithm>

namespace nuvhost {

bool PageData::IsNotGood(const PartResult& part) {
  return part.state != RunOutcome::State::kGood && part.state != RunOutcome::State::kSucceeded;
}

std::string PageData::Embedded(std::string svg) {
  const auto share = [&](std::string element) {
    if (std::ranges::find(shared, element) == shared.end()) shared.push_back(std::move(element));
  };
  svg.erase(0, svg.find("<svg"));
  if (const std::size_t image = svg.find("<image "); image != std::string::npos) {
    const std::size_t end = svg.find("/>", image) + 2;
    std::size_t number = 0;
    const auto element = [&] {
      return fmt::format("<image id=\"image-{}\" {}\n", number,
                         svg.substr(image + 7, end - image - 7));
    };
    while (number < shared.size() && shared[number] != element()) ++number;
    share(element());
    svg.replace(image, end - image, fmt::format("<use href=\"#image-{}\"/>", number));
  }
  constexpr std::string_view kFilterEnd = "</filter>\n";
  for (std::size_t filter = 0; (filter = svg.find("<filter ")) != std::string::npos;) {
    const std::size_t length = svg.find(kFilterEnd, filter) + kFilterEnd.size() - filter;
    share(svg.substr(filter, length));
    svg.erase(filter, length);
  }
  return svg;
}

}  // namespace nuvhost

// Texts of 1 MB, beside the plain way to the same answer: a search by std::string_view, and one
// copy into an output that keeps its storage. Every plain way reads C strings, as the instructions.

#include <cstring>
#include <string_view>

#include "bench/rows.h"

namespace bench {
namespace {

constexpr std::size_t kHits = 10000;

CNuvObject TextValue(const std::string& text) {
  CNuvObject value;
  value = text.c_str();
  return value;
}

/// Words with 10000 marks among them.
CNuvObject MarkedWords(Random& random, std::size_t length) {
  std::string text = Words(random, length);
  for (std::size_t i = 0; i < kHits; ++i) text.replace(i * (length / kHits), 8, "<serial>");
  return TextValue(text);
}

std::size_t Count(std::string_view text, std::string_view what) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += what.size()) ++count;
  return count;
}

void Replace(const Inputs& in, Out& out) {
  const std::string_view text = Text(in[0]);
  const std::string_view what = Text(in[1]);
  out.text.clear();
  std::size_t from = 0;
  for (std::size_t at; (at = text.find(what, from)) != text.npos; from = at + what.size()) {
    out.text.append(text, from, at - from).append(Text(in[2]));
  }
  out.text.append(text, from);
}

void Find(const Inputs& in, Out& out) {
  const std::size_t at = std::string_view(Text(in[0])).find(Text(in[1]));
  out.numbers.assign(1, at == std::string_view::npos ? -1.0 : static_cast<double>(at));
}

}  // namespace

std::string Words(Random& random, std::size_t length) {
  constexpr std::string_view kLetters = "eeeeeetttttaaaaooooiiiinnnnssshhhrrrdddlllucmfwygpbvk";
  std::string text;
  while (text.size() < length) {
    for (std::size_t left = 1 + random() % 9; left > 0; --left) {
      text += kLetters[random() % kLetters.size()];
    }
    text += ' ';
  }
  text.resize(length);
  return text;
}

void AddTextRows(std::vector<Row>& rows) {
  const std::vector<std::size_t> sizes = {std::size_t{1} << 20};
  rows.push_back(
      {"FindStr, absent",
       "_Nuv_String_CFindStr_",
       sizes,
       [](Random& random, std::size_t n) { return List(TextValue(Words(random, n)), "entries"); },
       {Other("std::string", Find)},
       true});
  rows.push_back({"FindStrNth, 10000",
                  "_Nuv_String_CFindStrNth_",
                  sizes,
                  [](Random& random, std::size_t n) {
                    return List(MarkedWords(random, n), "<serial>", static_cast<double>(kHits + 1));
                  },
                  {Other("std::string",
                         [](const Inputs& in, Out& out) {
                           out.copy.assign(1, static_cast<double>(Count(Text(in[0]), Text(in[1]))));
                         })},
                  true});
  rows.push_back({"ReplaceStr, 10000",
                  "_Nuv_String_CReplaceStr_",
                  sizes,
                  [](Random& random, std::size_t n) {
                    return List(MarkedWords(random, n), "<serial>", "0815");
                  },
                  {Other("std::string", Replace),
                   // Not the answer, but what it cannot do without: one search and one copy.
                   Other("memmem, memcpy",
                         [](const Inputs& in, Out& out) {
                           const char* text = Text(in[0]);
                           const std::size_t size = std::strlen(text);
                           out.copy.resize(size / sizeof(double) + 1);
                           const char* from = text;
                           const char* end = text + size;
                           while (const void* hit = memmem(
                                      from, static_cast<std::size_t>(end - from), "<serial>", 8)) {
                             from = static_cast<const char*>(hit) + 8;
                             asm volatile("" : "+r"(from));  // the search is not left out
                           }
                           std::memcpy(out.copy.data(), text, size);
                         })},
                  true});
  rows.push_back({"AddStr",
                  "_Nuv_String_CAddStr_",
                  sizes,
                  [](Random& random, std::size_t n) {
                    const CNuvObject first = TextValue(Words(random, n / 2));
                    return List(first, TextValue(Words(random, n / 2)));
                  },
                  {Other("std::string", [](const Inputs& in, Out& out) {
                    out.text.assign(Text(in[0])).append(Text(in[1]));
                  })}});
}

}  // namespace bench

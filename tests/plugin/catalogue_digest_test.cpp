// What saved programs and hosts hold of the catalogue, as one number.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string_view>

#include "plugin/formula_lib.h"

namespace {

/// FNV-1a (Fowler, Noll and Vo), 64 bits.
class Digest {
 public:
  void Add(std::string_view text) {
    for (const char c : text) AddByte(static_cast<unsigned char>(c));
    AddByte(0);
  }
  void Add(const char* text) { Add(std::string_view(text == nullptr ? "\x01" : text)); }
  void Add(std::uint32_t number) {
    for (int shift = 0; shift < 32; shift += 8) AddByte(number >> shift & 0xFFU);
  }
  void Add(const CNuvObject& value) {
    Add(static_cast<std::uint32_t>(value.GetType()));
    Add(static_cast<const char*>(value));
    Add(static_cast<double>(value));
    Add(static_cast<const CNuvPoint&>(value).x);
    Add(static_cast<const CNuvPoint&>(value).y);
    Add(static_cast<const CNuvLine&>(value).a);
    Add(static_cast<const CNuvLine&>(value).d);
  }
  std::uint64_t Value() const { return value_; }

 private:
  void Add(double number) {
    unsigned char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    for (const unsigned char byte : bytes) AddByte(byte);
  }
  void AddByte(std::uint32_t byte) { value_ = (value_ ^ byte) * 0x100000001b3U; }

  std::uint64_t value_ = 0xcbf29ce484222325U;
};

void AddInstruction(Digest& digest, const DescriptorRecord& record) {
  for (const char* text : {record.category, record.name, record.identifier, record.description}) {
    digest.Add(text);
  }
  digest.Add(record.help);
  digest.Add(std::uint32_t{record.repeatable});
  for (const ConstantRecord& constant : record.constants) {
    digest.Add(constant.type);
    for (const char* text : {constant.group, constant.name, constant.description}) digest.Add(text);
    for (const auto* value : {&constant.default_value, &constant.minimum, &constant.maximum}) {
      digest.Add(*value);
    }
    for (auto* choice = constant.choices.First(); choice != nullptr;
         choice = CChoiceMap::Next(choice)) {
      digest.Add(static_cast<std::uint32_t>(choice->key));
      digest.Add(choice->label.c_str());
    }
  }
  for (const ParameterRecord& input : record.inputs) {
    digest.Add(input.type);
    digest.Add(input.name);
    digest.Add(input.description);
    digest.Add(input.default_value);
  }
  for (const ResultRecord& result : record.results) {
    digest.Add(result.type);
    digest.Add(result.name);
    digest.Add(result.description);
  }
}

// Hosts store an instruction by its position and its identifier, and wire it by names and types. A
// change here is a change for every saved program: the digest is brought up to date by whoever
// means it, with a line in the change log.
TEST(Catalogue, IsWhatSavedProgramsKnow) {
  CFormulaLib library;
  library.InitPlugins();
  Digest digest;
  for (std::uint64_t i = 0; i < library.GetPluginCount(); ++i) {
    AddInstruction(digest, *library.GetPlugins()[i]->GetDescriptor());
  }
  EXPECT_EQ(digest.Value(), 0x968bef75ddd7eac4U)
      << std::hex << "the digest is now 0x" << digest.Value();
  library.ReleasePlugins();
}

}  // namespace

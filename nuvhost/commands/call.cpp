#include "nuvhost/commands/commands.h"
#include "nuvhost/error.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/system/console.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/values/json_value.h"
#include "reference_host/services/call_context.h"

namespace nuvhost {
namespace {

/// A point or a line written "1,2": as the JSON object it stands for.
Json PairAsJson(const std::string& text, const char* first, const char* second) {
  if (text.starts_with("{")) return ParseJson(text);
  const std::size_t comma = text.find(',');
  if (comma == std::string::npos) {
    throw ValueError("expected two numbers, {},{}", first, second);
  }
  return {{first, ParseJson(text.substr(0, comma))}, {second, ParseJson(text.substr(comma + 1))}};
}

/// A number, of which the special ones are written as words.
Json NumberAsJson(const std::string& text) {
  if (text == "NaN" || text == "Infinity" || text == "-Infinity") return text;
  return ParseJson(text);
}

Json WordAsJson(const std::string& word, std::uint32_t type) {
  switch (type) {
    case NUV_PARAM_STRING: return word;
    case NUV_PARAM_NUMBER: return NumberAsJson(word);
    case NUV_PARAM_POINT: return PairAsJson(word, "x", "y");
    case NUV_PARAM_LINE: return PairAsJson(word, "a", "d");
    default: return ParseJson(word);
  }
}

CNuvObject ValueFromWord(const std::string& word, std::uint32_t type, const char* name) {
  try {
    return FromJson(WordAsJson(word, type), type);
  } catch (const ValueError& error) {
    throw UserError("\"{}\" is no {} for \"{}\": {}", word, Describe(type), Utf8FromText(name),
                    error.what());
  }
}

/// The key of a choice given by its label, or the value as it stands.
CNuvObject ConstantFromWord(const std::string& word, const ConstantRecord& constant) {
  for (auto* node = constant.choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
    if (word != Utf8FromText(node->label.c_str())) continue;
    CNuvObject key;
    key = node->key;
    return key;
  }
  return ValueFromWord(word, constant.type,
                       constant.name == nullptr ? constant.group : constant.name);
}

void SetInputs(CallContext& context, const DescriptorRecord& descriptor,
               const std::vector<std::string>& values) {
  const std::size_t declared = descriptor.inputs.Size();
  if (values.size() > declared && descriptor.repeatable == 0) {
    throw UserError("\"{}\" takes {} inputs, {} were given", Utf8FromText(descriptor.name),
                    declared, values.size());
  }
  if (values.size() > declared) context.inputs.resize(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const ParameterRecord& input = descriptor.inputs[std::min(i, declared - 1)];
    context.inputs[i] = ValueFromWord(values[i], input.type, input.name);
  }
}

void SetConstants(CallContext& context, const DescriptorRecord& descriptor,
                  const std::vector<std::string>& constants) {
  for (const std::string& assignment : constants) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos) {
      throw UserError("--const {}: expected NAME=VALUE", assignment);
    }
    const std::size_t index = FindConstant(descriptor, assignment.substr(0, equals));
    context.constants[index] =
        ConstantFromWord(assignment.substr(equals + 1), descriptor.constants[index]);
  }
}

void Show(const Record& record) {
  for (const Message& message : record.messages) {
    Complain((message.severity == 1 ? "warning: " : "error: ") + Utf8FromBytes(message.source) +
             ": " + Utf8FromBytes(message.text) + '\n');
  }
  for (const LogEntry& entry : record.log) {
    Complain(fmt::format("log: {}\n", Utf8FromBytes(entry.text)));
  }
  for (const ProgramEvent& event : record.events) {
    Print(fmt::format("event {}, value {}\n", event.code, event.value));
  }
  for (const Annotation& annotation : record.annotations) {
    Print(fmt::format("annotation {}\n", Dump(ToJson(annotation))));
  }
}

}  // namespace

int CallOnce(const Catalogue& catalogue, const std::string& name,
             const std::vector<std::string>& values, const std::vector<std::string>& constants) {
  const CatalogueEntry& instruction = catalogue.Find(name);
  const DescriptorRecord& descriptor = *instruction.descriptor;
  Services services;
  CallContext context(descriptor, services);
  SetInputs(context, descriptor, values);
  SetConstants(context, descriptor, constants);

  const std::int32_t status = context.Execute(*instruction.prototype);
  Show(services.Take());
  if (status != 0) {
    Complain(fmt::format("nuvhost: \"{}\" failed with status {}\n", Utf8FromText(descriptor.name),
                         status));
    return kExitFailed;
  }
  for (std::size_t i = 0; i < context.results.size(); ++i) {
    Print(Utf8FromText(descriptor.results[i].name) + " = " + Dump(ToJson(context.results[i])) +
          '\n');
  }
  return kExitSuccess;
}

}  // namespace nuvhost

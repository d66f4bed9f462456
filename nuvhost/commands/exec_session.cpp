#include "nuvhost/commands/exec_session.h"

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <new>
#include <optional>
#include <vector>

#include "host/setting.h"
#include "nuvhost/commands/exec_arrays.h"
#include "nuvhost/drawing/svg_picture.h"
#include "nuvhost/error.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/text/names.h"
#include "nuvhost/values/answer.h"

namespace nuvhost {
namespace {

std::string Position(const char* list, std::size_t index) {
  return std::string(list) + "[" + std::to_string(index) + "]";
}

/// The list under a member's name; empty where the member is missing.
Json ListOf(const Json& request, const char* member) {
  const auto found = request.find(member);
  if (found == request.end()) return Json::array();
  if (!found->is_array()) {
    throw ValueError("\"{}\": expected a list, found {}", member, DescribeKind(*found));
  }
  return *found;
}

void CheckMembers(const Json& object, std::initializer_list<std::string_view> known) {
  for (const auto& [name, value] : object.items()) {
    if (std::ranges::find(known, name) == known.end()) {
      throw ValueError("unknown member \"{}\"{}", name, DidYouMean(name, std::vector(known)));
    }
  }
}

CNuvObject ReadAt(const char* list, std::size_t index, const Json& json, std::uint32_t type) {
  try {
    return json.is_object() && MayStandInFile(type) ? ArrayFromFile(json, type)
                                                    : FromJson(json, type);
  } catch (const ValueError& error) {
    throw ValueError(Position(list, index) + ": " + error.what());
  }
}

/// Overwrites the values that a list gives, by the types of the records.
template <class Record>
void Fill(const char* member, const Json& list, const TStdVector<Record>& records,
          std::vector<CNuvObject>& values) {
  if (list.size() > records.Size()) {
    throw ValueError("{}: one too many, the instruction has {}", Position(member, records.Size()),
                     records.Size());
  }
  for (std::size_t i = 0; i < list.size(); ++i) {
    values[i] = ReadAt(member, i, list[i], records[i].type);
  }
}

void FillInputs(const Json& list, const DescriptorRecord& descriptor,
                std::vector<CNuvObject>& inputs) {
  const std::size_t declared = descriptor.inputs.Size();
  if (descriptor.repeatable == 0 || list.size() <= declared) {
    Fill("in", list, descriptor.inputs, inputs);
    return;
  }
  inputs.resize(list.size());
  for (std::size_t i = 0; i < list.size(); ++i) {
    inputs[i] = ReadAt("in", i, list[i], descriptor.inputs[std::min(i, declared - 1)].type);
  }
}

std::int32_t CountFromJson(const Json& json, std::size_t given) {
  const std::int32_t count = IntegerFromJson(json);
  if (count < 0 || static_cast<std::size_t>(count) > given) {
    throw ValueError("\"count\": {} is not between 0 and the {} inputs there are", count, given);
  }
  return count;
}

/// Reads all settings before it changes one, so that a broken request changes none.
Json ApplySettings(const Json& settings) {
  if (!settings.is_object()) {
    throw ValueError("\"set\": expected an object, found " + DescribeKind(settings));
  }
  CheckMembers(settings, {"angleUnit", "defaultColor"});
  CNuvSetting& current = CNuvSetting::Inst();
  NuvAngleUnit unit = current.GetAngleUnit();
  std::uint32_t color = current.GetDefaultAnnotationColor();
  if (const auto found = settings.find("angleUnit"); found != settings.end()) {
    if (*found == "radians") {
      unit = NuvAngleUnit::kRadians;
    } else if (*found == "degrees") {
      unit = NuvAngleUnit::kDegrees;
    } else {
      throw ValueError("\"angleUnit\": expected \"radians\" or \"degrees\", found " + Dump(*found));
    }
  }
  if (const auto found = settings.find("defaultColor"); found != settings.end()) {
    if (!found->is_number_unsigned() ||
        found->get<std::uint64_t>() > std::numeric_limits<std::uint32_t>::max()) {
      throw ValueError("\"defaultColor\": expected a whole number from 0 to 4294967295, found " +
                       Dump(*found));
    }
    color = found->get<std::uint32_t>();
  }
  current.SetAngleUnit(unit);
  current.SetDefaultAnnotationColor(color);
  return Json::object();
}

Image ReadImageFile(const std::string& name) {
  std::string reason;
  std::optional<std::string> bytes = ReadBytes(name, reason);
  std::optional<Image> image = bytes ? ReadImage(std::move(*bytes), reason) : std::nullopt;
  if (!image) throw ValueError("\"image\": cannot take \"{}\": {}", name, reason);
  return *std::move(image);
}

/// The text under a member's name; empty where the member is missing.
std::string TextOf(const Json& request, const char* member) {
  const auto found = request.find(member);
  if (found == request.end()) return "";
  if (!found->is_string() || found->get_ref<const std::string&>().empty()) {
    throw ValueError("\"{}\": expected a file's name, found {}", member, DescribeKind(*found));
  }
  return found->get<std::string>();
}

Json Draw(const Json& request) {
  CheckMembers(request, {"draw", "image"});
  std::vector<Annotation> annotations;
  for (const Json& json : ListOf(request, "draw")) {
    try {
      annotations.push_back(AnnotationFromJson(json));
    } catch (const std::exception&) {
      throw ValueError(Position("draw", annotations.size()) + ": no annotation of an answer");
    }
  }
  Annotations drawn;
  for (const Annotation& annotation : annotations) drawn.push_back(&annotation);
  std::optional<Image> image;
  if (const std::string name = TextOf(request, "image"); !name.empty()) image = ReadImageFile(name);
  SvgPicture picture = DrawSvg(drawn, image, CNuvSetting::Inst().GetDefaultAnnotationColor());
  Json answer{{"svg", std::move(picture.svg)}};
  if (picture.left_out > 0) answer["leftOut"] = picture.left_out;
  return answer;
}

}  // namespace

std::string ExecSession::Answer(std::string_view line) {
  try {
    if (line.size() > kLongestLine) throw ValueError("a line longer than {} bytes", kLongestLine);
    return Dump(Respond(ParseJson(line)));
  } catch (const std::bad_alloc&) {
    return R"({"error":"memory has run out"})";
  } catch (const std::exception& error) {
    const Json answer{{"error", error.what()}};
    return answer.dump(-1, ' ', false, Json::error_handler_t::replace);
  }
}

Json ExecSession::Respond(const Json& request) {
  if (!request.is_object()) throw ValueError("expected an object, found " + DescribeKind(request));
  if (const auto set = request.find("set"); set != request.end()) {
    CheckMembers(request, {"set"});
    return ApplySettings(*set);
  }
  if (request.contains("draw")) return Draw(request);
  return Call(request);
}

Json ExecSession::Call(const Json& request) {
  CheckMembers(request, {"instr", "const", "in", "prev", "count", "outFile"});
  const auto name = request.find("instr");
  if (name == request.end() || !name->is_string()) {
    throw ValueError("a request names its instruction: {\"instr\": \"Numeric: Add\"}");
  }
  const CatalogueEntry& instruction = catalogue_.Find(name->get_ref<const std::string&>());
  const DescriptorRecord& descriptor = *instruction.descriptor;
  CallContext context(descriptor, services_);
  Fill("const", ListOf(request, "const"), descriptor.constants, context.constants);
  FillInputs(ListOf(request, "in"), descriptor, context.inputs);
  Fill("prev", ListOf(request, "prev"), descriptor.results, context.results);
  if (const auto count = request.find("count"); count != request.end()) {
    context.input_count = CountFromJson(*count, context.inputs.size());
  }
  std::optional<ArrayFile> file;
  if (const std::string path = TextOf(request, "outFile"); !path.empty()) file.emplace(path);

  services_.Take();
  const std::int32_t status = context.Execute(*instruction.prototype);
  return AnswerToCall(status, context, services_.Take(), [&](const CNuvObject& value) {
    return file ? file->Take(value) : ToJson(value);
  });
}

}  // namespace nuvhost

#include "nuvhost/values/answer.h"

#include "nuvhost/text/utf8.h"

namespace nuvhost {

Json AnswerToCall(std::int32_t status, const CallContext& context, const Record& record,
                  const std::function<Json(const CNuvObject&)>& to_json) {
  Json answer{{"status", status}, {"out", Json::array()}};
  for (const CNuvObject& result : context.results) answer["out"].push_back(to_json(result));
  for (const Message& message : record.messages) {
    answer["messages"].push_back({{"severity", message.severity},
                                  {"source", Utf8FromBytes(message.source)},
                                  {"text", Utf8FromBytes(message.text)}});
  }
  for (const ProgramEvent& event : record.events) {
    answer["events"].push_back({{"code", event.code}, {"value", event.value}});
  }
  for (const Annotation& annotation : record.annotations) {
    answer["annotations"].push_back(ToJson(annotation));
  }
  for (const CallContext::Mark& mark : context.marks) {
    answer["marks"].push_back(Json::array({mark.result, mark.value}));
  }
  for (const LogEntry& entry : record.log) {
    answer["log"].push_back(
        {{"level", static_cast<int>(entry.level)}, {"text", Utf8FromBytes(entry.text)}});
  }
  return answer;
}

void TakeAnswer(const Json& answer, const DescriptorRecord& descriptor, CallContext& context,
                Record& record) {
  const auto list = [&](const char* name) {
    return answer.contains(name) ? answer.at(name) : Json::array();
  };
  const auto text = [](const Json& json) {
    return BytesFromUtf8(json.get_ref<const std::string&>());
  };
  const Json results = list("out");
  for (std::size_t i = 0; i < results.size() && i < context.results.size(); ++i) {
    if (!results[i].is_null())
      context.results[i] = FromJson(results[i], descriptor.results[i].type);
  }
  for (const Json& mark : list("marks")) {
    context.marks.push_back({mark.at(0).get<std::int32_t>(), mark.at(1).get<std::int32_t>()});
  }
  for (const Json& message : list("messages")) {
    record.messages.push_back({message.at("severity").get<std::int32_t>(),
                               text(message.at("source")), text(message.at("text"))});
  }
  for (const Json& event : list("events")) {
    record.events.push_back(
        {event.at("code").get<std::int32_t>(), event.at("value").get<std::int32_t>()});
  }
  for (const Json& annotation : list("annotations")) {
    record.annotations.push_back(AnnotationFromJson(annotation));
  }
  for (const Json& entry : list("log")) {
    record.log.push_back(
        {static_cast<LEVEL>(entry.at("level").get<int>()), text(entry.at("text"))});
  }
}

}  // namespace nuvhost

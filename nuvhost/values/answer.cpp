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

}  // namespace nuvhost

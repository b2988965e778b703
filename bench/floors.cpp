#include "bench/floors.h"

#include <cjson/cJSON_Utils.h>

namespace bench {
namespace {

pq::JsonPtr read(const char* document) {
  const pq::TextPtr text(j2s_read_file(document, nullptr));
  return pq::JsonPtr(cJSON_Parse(text.get()));
}

cJSON* patched_part(cJSON* document, bool in_parameters) {
  return in_parameters ? cJSON_GetObjectItemCaseSensitive(document, "pq_tuning_param") : document;
}

// Replaces in place. The patch library would move the member to the end of its object, but the
// daemon's documents keep the order.
void replace(cJSON* document, cJSON* operation) {
  const std::string path = cJSON_GetStringValue(cJSON_GetObjectItem(operation, "path"));
  const size_t slash = path.rfind('/');
  const std::string name = path.substr(slash + 1);
  cJSON* parent = cJSONUtils_GetPointer(document, path.substr(0, slash).c_str());
  cJSON* value = cJSON_DetachItemFromObject(operation, "value");
  if (cJSON_IsArray(parent)) {
    cJSON_ReplaceItemInArray(parent, std::stoi(name), value);
  } else {
    cJSON_ReplaceItemInObjectCaseSensitive(parent, name.c_str(), value);
  }
}

}  // namespace

pq::TextPtr floor_of_query(const Task& task) {
  const std::string& request = task.request;
  const pq::JsonPtr operation(cJSON_ParseWithLength(request.data() + 1, request.size() - 2));
  cJSON_ReplaceItemInObject(operation.get(), "platform", cJSON_CreateNumber(kPlatformNumber));
  const pq::JsonPtr tree = read(task.document);
  cJSON* values = cJSON_DetachItemFromObjectCaseSensitive(
      patched_part(tree.get(), task.in_parameters), task.section.c_str());
  cJSON_AddItemToObject(operation.get(), "value", values);
  return pq::TextPtr(cJSON_Print(operation.get()));
}

pq::TextPtr floor_of_change(const Task& task) {
  const std::string& request = task.request;
  const pq::JsonPtr operation(cJSON_ParseWithLength(request.data() + 1, request.size() - 2));
  const pq::JsonPtr tree = read(task.document);
  replace(patched_part(tree.get(), task.in_parameters), operation.get());
  return pq::TextPtr(cJSON_Print(tree.get()));
}

}  // namespace bench

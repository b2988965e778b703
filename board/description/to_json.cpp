#include <cjson/cJSON.h>

#include <memory>
#include <stdexcept>

#include "description/description.h"
#include "description/names.h"

namespace board {
namespace {

struct FreeJson {
  void operator()(cJSON* item) const { cJSON_Delete(item); }
  void operator()(char* text) const { cJSON_free(text); }
};

void add(cJSON* object, const char* key, bool value) {
  cJSON_AddBoolToObject(object, key, value);
}
void add(cJSON* object, const char* key, uint32_t value) {
  cJSON_AddNumberToObject(object, key, value);
}
void add(cJSON* object, const char* key, const std::string& value) {
  cJSON_AddStringToObject(object, key, value.c_str());
}

// A fault that is off has no name, and is left out.
template <typename Value, size_t Size>
void add_named(cJSON* object, const char* key, Value value,
               const std::pair<std::string_view, Value> (&names)[Size]) {
  for (const auto& [name, named_value] : names) {
    if (named_value == value) {
      add(object, key, std::string(name));
      return;
    }
  }
  if (value != Value{}) {
    throw std::runtime_error("the board description has no word for the value of \"" +
                             std::string(key) + "\"");
  }
}

void add_connectors(cJSON* root, const std::vector<Connector>& connectors) {
  cJSON* list = cJSON_AddArrayToObject(root, "connectors");
  for (const auto& connector : connectors) {
    cJSON* object = cJSON_CreateObject();
    cJSON_AddItemToArray(list, object);
    add(object, "type", connector.type);
    add(object, "connected", connector.connected);
    add(object, "has_encoder", connector.has_encoder);
    add(object, "lit", connector.lit);
    add(object, "picture_controls", connector.picture_controls);
  }
}

void add_store(cJSON* root, const Description& description) {
  cJSON* object = cJSON_AddObjectToObject(root, "store");
  cJSON* version = cJSON_AddArrayToObject(object, "version");
  for (const uint16_t number : description.store_version) {
    cJSON_AddItemToArray(version, cJSON_CreateNumber(number));
  }
  add(object, "empty", description.store_empty);
}

void add_dump(cJSON* root, const Description& description) {
  cJSON* object = cJSON_AddObjectToObject(root, "dump");
  add(object, "width", description.dump_width);
  add(object, "height", description.dump_height);
  add(object, "format_in", description.dump_format_in);
  add(object, "format_out", description.dump_format_out);
}

void add_faults(cJSON* root, const Faults& faults) {
  cJSON* object = cJSON_AddObjectToObject(root, "faults");
  add_named(object, "open", faults.open_errno, kErrnoNames);
  add(object, "no_device", faults.no_device);
  add(object, "not_master", faults.not_master);
  add(object, "bus_id", faults.bus_id);
  add_named(object, "gamma", faults.gamma_errno, kErrnoNames);
  add_named(object, "commit", faults.commit_errno, kErrnoNames);
  add(object, "pace_commits", faults.pace_commits);
}

}  // namespace

std::string to_json(const Description& description) {
  const std::unique_ptr<cJSON, FreeJson> root(cJSON_CreateObject());
  add(root.get(), "name", description.name);
  add(root.get(), "about", description.about);
  add(root.get(), "platform", description.platform);
  cJSON* properties = cJSON_AddObjectToObject(root.get(), "properties");
  for (const auto& [name, value] : description.properties)
    add(properties, name.c_str(), value);
  add_store(root.get(), description);
  add_connectors(root.get(), description.connectors);
  add(root.get(), "gamma_lut_size", description.gamma_lut_size);
  add_dump(root.get(), description);
  add_named(root.get(), "engine", description.engine, kEngineNames);
  add_faults(root.get(), description.faults);
  const std::unique_ptr<char, FreeJson> text(cJSON_Print(root.get()));
  return text.get();
}

}  // namespace board

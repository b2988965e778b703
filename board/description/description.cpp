#include "description/description.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <cjson/cJSON.h>

#include "description/names.h"

namespace board {
namespace {

struct DeleteJson {
  void operator()(cJSON* item) const { cJSON_Delete(item); }
};

// One object of the file: hands out members by kind and complains about keys nobody asked for.
class Reader {
 public:
  Reader(std::string where, const cJSON* object) : where_(std::move(where)), object_(object) {
    if (!cJSON_IsObject(object)) fail("is no JSON object");
  }

  const cJSON* find(const char* key) {
    known_ += std::string(known_.empty() ? "" : ", ") + key;
    return cJSON_GetObjectItemCaseSensitive(object_, key);
  }
  void read(const char* key, bool& value) {
    if (const cJSON* item = find(key)) {
      if (!cJSON_IsBool(item)) fail(key, "true or false");
      value = cJSON_IsTrue(item);
    }
  }
  template <typename Number>
  void read_number(const char* key, Number& value, double largest) {
    if (const cJSON* item = find(key)) value = number<Number>(key, item, largest);
  }
  void read(const char* key, std::string& value) {
    if (const cJSON* item = find(key)) value = text(key, item);
  }
  template <typename Value, size_t Size>
  void read_named(const char* key, Value& value,
                  const std::pair<std::string_view, Value> (&names)[Size]) {
    const cJSON* item = find(key);
    if (item == nullptr) return;
    const std::string name = text(key, item);
    std::string allowed;
    for (const auto& [known_name, known_value] : names) {
      if (known_name == name) {
        value = known_value;
        return;
      }
      allowed += std::string(allowed.empty() ? "" : ", ") + std::string(known_name);
    }
    fail(key, "one of: " + allowed);
  }
  template <typename Number>
  Number number(const char* key, const cJSON* item, double largest) const {
    const double value = cJSON_GetNumberValue(item);
    if (!(value >= 0 && value <= largest)) {
      fail(key, "a number from 0 to " + std::to_string(static_cast<long long>(largest)));
    }
    return static_cast<Number>(value);
  }
  std::string text(const char* key, const cJSON* item) const {
    if (!cJSON_IsString(item)) fail(key, "a text");
    return item->valuestring;
  }
  // To be called last: a misspelt key would otherwise be passed over in silence.
  void refuse_unknown_keys() const {
    for (const cJSON* item = object_->child; item != nullptr; item = item->next) {
      if ((", " + known_ + ", ").find(std::string(", ") + item->string + ", ") ==
          std::string::npos) {
        fail(std::string("unknown key \"") + item->string + "\"; known here: " + known_);
      }
    }
  }
  [[noreturn]] void fail(const std::string& what) const {
    throw std::runtime_error(where_ + ": " + what);
  }
  [[noreturn]] void fail(const char* key, const std::string& allowed) const {
    fail(std::string("\"") + key + "\" must be " + allowed);
  }
  const std::string& where() const { return where_; }

 private:
  std::string where_;
  const cJSON* object_;
  std::string known_;
};

uint32_t connector_type(const Reader& reader, const cJSON* item) {
  if (cJSON_IsNumber(item)) return reader.number<uint32_t>("type", item, 255);
  const std::string name = reader.text("type", item);
  for (uint32_t code = 0; code < std::size(kConnectorTypes); ++code) {
    if (kConnectorTypes[code] == name) return code;
  }
  reader.fail("type", "a connector type name such as eDP or HDMI-A, or its code");
}

std::vector<Connector> read_connectors(const std::string& where, const cJSON* list) {
  std::vector<Connector> connectors;
  std::map<uint32_t, uint32_t> last_type_id;
  const cJSON* item = nullptr;
  cJSON_ArrayForEach(item, list) {
    Reader reader(where + ": connectors", item);
    Connector connector;
    if (const cJSON* type = reader.find("type")) connector.type = connector_type(reader, type);
    connector.type_id = ++last_type_id[connector.type];
    reader.read("connected", connector.connected);
    reader.read("has_encoder", connector.has_encoder);
    reader.read("lit", connector.lit);
    reader.read("picture_controls", connector.picture_controls);
    reader.refuse_unknown_keys();
    connectors.push_back(connector);
  }
  return connectors;
}

void read_store(Reader& board, Description& description) {
  const cJSON* object = board.find("store");
  if (object == nullptr) return;
  Reader reader(board.where() + ": store", object);
  if (const cJSON* version = reader.find("version")) {
    if (cJSON_GetArraySize(version) != 2) reader.fail("version", "two numbers, as in [2, 0]");
    for (int i = 0; i < 2; ++i) {
      description.store_version[i] =
          reader.number<uint16_t>("version", cJSON_GetArrayItem(version, i), 65535);
    }
  }
  reader.read("empty", description.store_empty);
  reader.refuse_unknown_keys();
}

void read_dump(Reader& board, Description& description) {
  const cJSON* object = board.find("dump");
  if (object == nullptr) return;
  Reader reader(board.where() + ": dump", object);
  reader.read_number("width", description.dump_width, 8192);
  reader.read_number("height", description.dump_height, 8192);
  reader.read("format_in", description.dump_format_in);
  reader.read("format_out", description.dump_format_out);
  reader.refuse_unknown_keys();
}

void read_faults(Reader& board, Faults& faults) {
  const cJSON* object = board.find("faults");
  if (object == nullptr) return;
  Reader reader(board.where() + ": faults", object);
  reader.read_named("open", faults.open_errno, kErrnoNames);
  reader.read("no_device", faults.no_device);
  reader.read("not_master", faults.not_master);
  reader.read("bus_id", faults.bus_id);
  reader.read_named("gamma", faults.gamma_errno, kErrnoNames);
  reader.read_named("commit", faults.commit_errno, kErrnoNames);
  reader.read("pace_commits", faults.pace_commits);
  reader.refuse_unknown_keys();
}

}  // namespace

Description read_description(const std::filesystem::path& file) {
  std::ifstream stream(file);
  if (!stream) throw std::runtime_error("cannot read the board description " + file.string());
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const std::unique_ptr<cJSON, DeleteJson> root(cJSON_Parse(text.c_str()));
  if (root == nullptr) throw std::runtime_error(file.string() + ": is no valid JSON");

  Reader reader(file.string(), root.get());
  Description description;
  description.name = file.stem().string();
  reader.read("name", description.name);
  reader.read("about", description.about);
  reader.read("platform", description.platform);
  if (const cJSON* properties = reader.find("properties")) {
    const cJSON* item = nullptr;
    cJSON_ArrayForEach(item, properties) {
      description.properties[item->string] = reader.text(item->string, item);
    }
  }
  read_store(reader, description);
  if (const cJSON* list = reader.find("connectors")) {
    description.connectors = read_connectors(reader.where(), list);
  }
  reader.read_number("gamma_lut_size", description.gamma_lut_size, kLargestGammaTable);
  read_dump(reader, description);
  reader.read_named("engine", description.engine, kEngineNames);
  read_faults(reader, description.faults);
  reader.refuse_unknown_keys();
  return description;
}

std::string connector_name(uint32_t type, uint32_t type_id) {
  const std::string type_name = type < std::size(kConnectorTypes)
                                    ? std::string(kConnectorTypes[type])
                                    : "type" + std::to_string(type);
  return type_name + "-" + std::to_string(type_id);
}

}  // namespace board

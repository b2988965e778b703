#include "description/description.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "description/names.h"

namespace board {
namespace {

using Json = nlohmann::ordered_json;

constexpr uint32_t kMinDump = 16;  // pixels; the test picture divides its height into 16 parts
constexpr uint32_t kMaxDump = 8192;
constexpr uint32_t kMaxTypeCode = 255;

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const auto& word : words)
    text += (text.empty() ? "" : ", ") + word;
  return text;
}

// As much of a value as fits an error message.
std::string excerpt(const Json& value) {
  constexpr size_t kLongest = 60;
  std::string text = value.dump(-1, ' ', false, Json::error_handler_t::replace);
  if (text.size() > kLongest) text = text.substr(0, kLongest) + "...";
  return text;
}

// One object of the file: fills in values by kind and complains about keys nobody asked for.
class Reader {
 public:
  // prefix: leads to the object, as "dump."; empty for the whole file.
  Reader(const std::string& file, std::string prefix, const Json& object)
      : file_(file), prefix_(std::move(prefix)), object_(object) {}

  void flag(const char* key, bool& value) {
    const Json* item = find(key);
    if (item == nullptr) return;
    if (!item->is_boolean()) refuse(key, *item, "true or false");
    value = item->get<bool>();
  }

  void text(const char* key, std::string& value) {
    const Json* item = find(key);
    if (item == nullptr) return;
    if (!item->is_string()) refuse(key, *item, "a text");
    value = item->get<std::string>();
  }

  template <typename Number>
  void number(const char* key, Number& value, uint32_t smallest, uint32_t largest) {
    if (const Json* item = find(key)) value = whole<Number>(key, *item, smallest, largest);
  }

  template <typename Value, typename NameValue, size_t Size>
  void word(const char* key, Value& value, const Name<NameValue> (&names)[Size]) {
    const Json* item = find(key);
    if (item == nullptr) return;
    std::vector<std::string> allowed;
    for (const auto& [name, named] : names) {
      if (item->is_string() && item->get_ref<const std::string&>() == name) {
        value = named;
        return;
      }
      allowed.emplace_back(name);
    }
    refuse(key, *item, "one of: " + joined(allowed));
  }

  void connector_type(uint32_t& value) {
    const Json* item = find("type");
    if (item == nullptr) return;
    const auto* name = item->is_string()
                           ? std::ranges::find(kConnectorTypes, item->get<std::string>())
                           : std::end(kConnectorTypes);
    if (name != std::end(kConnectorTypes)) {
      value = static_cast<uint32_t>(name - std::begin(kConnectorTypes));
    } else if (item->is_number_unsigned() && *item <= kMaxTypeCode) {
      value = item->get<uint32_t>();
    } else {
      refuse("type", *item,
             "a code from 0 to 255 or one of: " +
                 joined({std::begin(kConnectorTypes), std::end(kConnectorTypes)}));
    }
  }

  void version(uint16_t (&value)[2]) {
    const Json* item = find("version");
    if (item == nullptr) return;
    if (!item->is_array() || item->size() != 2) refuse("version", *item, "two numbers, as [2, 0]");
    for (size_t i = 0; i < 2; ++i)
      value[i] = whole<uint16_t>("version", (*item)[i], 0, UINT16_MAX);
  }

  void texts(const char* key, std::map<std::string, std::string>& values) {
    const Json* item = find(key);
    if (item == nullptr) return;
    if (!item->is_object()) refuse(key, *item, "an object of names and texts");
    for (const auto& [name, value] : item->items()) {
      if (!value.is_string()) refuse(std::string(key) + "." + name, value, "a text");
      values[name] = value.get<std::string>();
    }
  }

  template <typename Fields>
  void object(const char* key, Fields fields) {
    if (const Json* item = find(key)) read_object(key, *item, fields);
  }

  template <typename Value, typename Fields>
  void list(const char* key, std::vector<Value>& values, size_t most, Fields fields) {
    const Json* item = find(key);
    if (item == nullptr) return;
    if (!item->is_array() || item->size() > most) {
      refuse(key, *item, "a list of at most " + std::to_string(most));
    }
    values.clear();
    for (const Json& element : *item) {
      const std::string place = std::string(key) + "[" + std::to_string(values.size()) + "]";
      read_object(place, element, [&](Reader& reader) { fields(reader, values.emplace_back()); });
    }
  }

  // To be called last: a misspelt key would otherwise be passed over in silence.
  void refuse_unknown_keys() const {
    for (const auto& [key, value] : object_.items()) {
      if (std::ranges::find(known_, key) == known_.end()) {
        throw std::runtime_error(file_ + ": there is no key \"" + prefix_ + key +
                                 "\"; allowed here: " + joined(known_));
      }
    }
  }

 private:
  const Json* find(const char* key) {
    known_.emplace_back(key);
    const auto found = object_.find(key);
    return found == object_.end() ? nullptr : &*found;
  }

  template <typename Fields>
  void read_object(const std::string& key, const Json& item, Fields fields) const {
    if (!item.is_object()) refuse(key, item, "an object, as {...}");
    Reader reader(file_, prefix_ + key + ".", item);
    fields(reader);
    reader.refuse_unknown_keys();
  }

  template <typename Number>
  Number whole(const char* key, const Json& item, uint32_t smallest, uint32_t largest) const {
    if (!item.is_number_unsigned() || item < smallest || item > largest) {
      refuse(key, item,
             "a whole number from " + std::to_string(smallest) + " to " + std::to_string(largest));
    }
    return item.get<Number>();
  }

  [[noreturn]] void refuse(const std::string& key, const Json& value,
                           const std::string& allowed) const {
    throw std::runtime_error(file_ + ": \"" + prefix_ + key + "\" is " + excerpt(value) +
                             "; it must be " + allowed);
  }

  const std::string& file_;
  std::string prefix_;
  const Json& object_;
  std::vector<std::string> known_;
};

// Writes what a Reader reads, by the same calls.
class Writer {
 public:
  void flag(const char* key, bool value) { json[key] = value; }
  void text(const char* key, const std::string& value) { json[key] = value; }
  void number(const char* key, uint32_t value, uint32_t /*smallest*/, uint32_t /*largest*/) {
    json[key] = value;
  }
  template <typename Value, typename NameValue, size_t Size>
  void word(const char* key, const Value& value, const Name<NameValue> (&names)[Size]) {
    for (const auto& [name, named] : names) {
      if (named == value) json[key] = name;
    }
  }
  void connector_type(uint32_t value) { json["type"] = value; }
  void version(const uint16_t (&value)[2]) { json["version"] = {value[0], value[1]}; }
  void texts(const char* key, const std::map<std::string, std::string>& values) {
    json[key] = values;
  }
  template <typename Fields>
  void object(const char* key, Fields fields) {
    Writer writer;
    fields(writer);
    json[key] = writer.json;
  }
  template <typename Value, typename Fields>
  void list(const char* key, std::vector<Value>& values, size_t /*most*/, Fields fields) {
    json[key] = Json::array();
    for (Value& value : values) {
      Writer writer;
      fields(writer, value);
      json[key].push_back(writer.json);
    }
  }

  Json json = Json::object();
};

// One walk for both directions: what is written can be read.
void transfer(auto& archive, Description& board) {
  archive.text("name", board.name);
  archive.text("about", board.about);
  archive.text("platform", board.platform);
  archive.texts("properties", board.properties);
  archive.object("store", [&](auto& store) {
    store.version(board.store_version);
    store.flag("empty", board.store_empty);
  });
  archive.list("connectors", board.connectors, kMaxConnectors,
               [](auto& fields, Connector& connector) {
                 fields.connector_type(connector.type);
                 fields.flag("connected", connector.connected);
                 fields.flag("has_encoder", connector.has_encoder);
                 fields.flag("lit", connector.lit);
                 fields.flag("picture_controls", connector.picture_controls);
               });
  archive.number("gamma_lut_size", board.gamma_lut_size, 0, kMaxGammaTable);
  archive.object("dump", [&](auto& dump) {
    dump.number("width", board.dump_width, kMinDump, kMaxDump);
    dump.number("height", board.dump_height, kMinDump, kMaxDump);
    dump.word("format_in", board.dump_format_in, kDumpFormats);
    dump.word("format_out", board.dump_format_out, kDumpFormats);
  });
  archive.word("engine", board.engine, kEngineNames);
  archive.object("data", [&](auto& data) {
    data.number("size", board.data_size, 1, kMaxData);
    data.number("free", board.data_free, 0, kMaxData);
  });
  archive.object("faults", [&](auto& faults) {
    faults.word("open", board.faults.open_errno, kErrnoNames);
    faults.flag("no_device", board.faults.no_device);
    faults.flag("not_master", board.faults.not_master);
    faults.flag("bus_id", board.faults.bus_id);
    faults.word("gamma", board.faults.gamma_errno, kErrnoNames);
    faults.word("commit", board.faults.commit_errno, kErrnoNames);
    faults.flag("pace_commits", board.faults.pace_commits);
  });
}

// The library would keep the last of two keys in silence.
Json parse(const std::string& file, const std::string& text) try {
  std::vector<std::set<std::string>> keys;
  return Json::parse(text, [&](int, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) keys.emplace_back();
    if (event == Json::parse_event_t::object_end) keys.pop_back();
    if (event == Json::parse_event_t::key && !keys.back().insert(parsed).second) {
      throw std::runtime_error(file + ": the key " + excerpt(parsed) +
                               " stands twice in one object; leave one of them");
    }
    return true;
  });
} catch (const Json::exception& error) {
  const std::string_view what = error.what();  // "[library's own code] reason"
  throw std::runtime_error(file +
                           " is not valid JSON: " + std::string(what.substr(what.find(']') + 2)));
}

}  // namespace

Description read_description(const std::filesystem::path& file) {
  std::ifstream stream(file);
  if (!stream) throw std::runtime_error("cannot read the board description " + file.string());
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const std::string name = file.string();
  const Json root = parse(name, text);
  if (!root.is_object()) {
    throw std::runtime_error(name + " holds " + excerpt(root) + "; it must hold an object");
  }
  Description description;
  description.name = file.stem().string();
  Reader reader(name, "", root);
  transfer(reader, description);
  reader.refuse_unknown_keys();
  std::map<uint32_t, uint32_t> last_type_id;
  for (Connector& connector : description.connectors)
    connector.type_id = ++last_type_id[connector.type];
  return description;
}

std::string to_json(Description description) {
  Writer writer;
  transfer(writer, description);
  return writer.json.dump(2) + '\n';
}

std::string connector_name(uint32_t type, uint32_t type_id) {
  const std::string type_name = type < std::size(kConnectorTypes)
                                    ? std::string(kConnectorTypes[type])
                                    : "type" + std::to_string(type);
  return type_name + "-" + std::to_string(type_id);
}

}  // namespace board

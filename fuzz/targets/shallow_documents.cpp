// Compares a partly read document with its whole tree: results of queries, updates and loads must
// be equal to the last byte. Lines after the first:
//
//   a document, printed as the daemon prints it; if it is not JSON, the line itself
//   changes of that text: three characters each, the position (two of them) and the new character
//   ('~' cuts the text)
//   a patch, for the document and for its "pq_tuning_param"
#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <utility>

#include "documents/pq_parameters.h"
#include "fuzz/support/check.h"
#include "fuzz/support/input.h"
#include "j2s/shallow_tree.h"
#include "json/patch.h"

namespace {

using pq::JsonPtr;

const std::atomic<bool> kGoOn = false;

struct Section {
  const char* name;
  size_t offset;  // in pq_tuning_param
};
constexpr std::array<Section, 5> kSections = {{{"csc", offsetof(pq_tuning_param, csc)},
                                               {"gamma", offsetof(pq_tuning_param, gamma)},
                                               {"dci", offsetof(pq_tuning_param, dci)},
                                               {"acm", offsetof(pq_tuning_param, acm)},
                                               {"sharp", offsetof(pq_tuning_param, sharp)}}};

std::string printed(cJSON* tree) {
  const pq::TextPtr text = pq::print_json(tree);
  return text ? text.get() : "(nothing)";
}

std::string document_text(std::string_view line, std::string_view changes) {
  const JsonPtr tree = pq::parse_json(line);
  std::string text = tree ? printed(tree.get()) : std::string(line);
  for (; changes.size() >= 3 && !text.empty(); changes.remove_prefix(3)) {
    const auto place =
        static_cast<uint8_t>(changes[0]) * size_t{64} + static_cast<uint8_t>(changes[1]) % 64;
    if (changes[2] == '~') {
      text.resize(place % text.size());
    } else {
      text[place % text.size()] = changes[2];
    }
  }
  return text.c_str();  // up to the first zero byte, as a file is read
}

// The result of loading, and all parameters afterwards.
std::string loaded(cJSON* item, const char* structure = "pq_tuning_param", size_t offset = 0) {
  pq::J2sContext context;
  pq::PqParameters parameters;
  char* values = reinterpret_cast<char*>(&parameters.values);
  const int result = j2s_json_to_struct(context.get(), item, structure, values + offset);
  const pq::TextPtr text(j2s_dump_struct(context.get(), "pq_tuning_param", values));
  return std::to_string(result) + text.get();
}

cJSON* parameters_in(const JsonPtr& document) {
  return cJSON_GetObjectItem(document.get(), "pq_tuning_param");
}

struct Way {
  JsonPtr (*read)(const std::string& text);

  std::string load(const std::string& text) const { return loaded(parameters_in(read(text))); }

  std::string query(const std::string& text, const Section& section) const {
    const JsonPtr document = read(text);
    cJSON* stored = parameters_in(document);
    fuzz::require(j2s::expand(stored), "there is memory");
    return loaded(cJSON_GetObjectItemCaseSensitive(stored, section.name), section.name,
                  section.offset);
  }

  std::string query_table(const std::string& text, const char* name) const {
    const JsonPtr document = read(text);
    const JsonPtr operation(cJSON_CreateObject());
    JsonPtr table(cJSON_DetachItemFromObjectCaseSensitive(document.get(), name));
    if (table) pq::add_to_object(operation.get(), "value", std::move(table));
    return printed(operation.get());
  }

  std::string change(const std::string& text, std::string_view patch) const {
    const JsonPtr document = read(text);
    const int status = pq::apply_patch(document.get(), pq::parse_json(patch), kGoOn);
    return std::to_string(status) + (status == 0 ? printed(document.get()) : "");
  }

  std::string change_parameters(const std::string& text, std::string_view patch) const {
    const JsonPtr document = read(text);
    const JsonPtr item(cJSON_DetachItemFromObject(document.get(), "pq_tuning_param"));
    const int status = pq::apply_patch(item.get(), pq::parse_json(patch), kGoOn);
    return std::to_string(status) + (status == 0 ? loaded(item.get()) : "");
  }
};

constexpr Way kInPart = {[](const std::string& text) { return pq::parse_shallow(text.c_str()); }};
constexpr Way kWhole = {[](const std::string& text) { return pq::parse_json(text); }};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  fuzz::start_board(input);
  const std::string_view line = input.line();
  const std::string text = document_text(line, input.line());
  const std::string_view patch = input.line();
  fuzz::require(kInPart.load(text) == kWhole.load(text), "it loads alike");
  const Section& section = kSections[size % kSections.size()];
  fuzz::require(kInPart.query(text, section) == kWhole.query(text, section), "sections are alike");
  const char* table = size % 2 == 0 ? "acm" : "dci";
  fuzz::require(kInPart.query_table(text, table) == kWhole.query_table(text, table),
                "tables are alike");
  fuzz::require(printed(pq::parse_quickly(patch).get()) == printed(pq::parse_json(patch).get()),
                "a request is read alike");
  fuzz::require(kInPart.change(text, patch) == kWhole.change(text, patch), "it changes alike");
  fuzz::require(kInPart.change_parameters(text, patch) == kWhole.change_parameters(text, patch),
                "its parameters change alike");
  return 0;
}

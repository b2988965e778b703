#include <cjson/cJSON_Utils.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "command_syntax.h"
#include "commands.h"
#include "files.h"
#include "pqclient/check.h"
#include "pqclient/error.h"
#include "section_tree.h"
#include "write_plan.h"

namespace {

using pqclient::Error;
using pqclient::ErrorKind;
using pqclient::JsonPtr;
using pqclient::Target;

struct Arguments {
  std::string file;
  bool is_dry_run = false;
};

// An array of operations. A single operation without its array is accepted, too.
JsonPtr read_patch(const std::string& path) {
  JsonPtr patch = pqclient::parse_whole_json(read_input(path));
  if (cJSON_IsObject(patch.get()) != 0) {
    JsonPtr array(cJSON_CreateArray());
    add_element(*array, std::move(patch));
    return array;
  }
  if (cJSON_IsArray(patch.get()) == 0) {
    constexpr const char* kExample = R"([{"op":"replace","path":"/csc/cscHue","value":256}])";
    throw Error(ErrorKind::kInput,
                path + " is not a JSON Patch, which is an array of operations such as " + kExample);
  }
  return patch;
}

// The length of the pointer's part that consists of known names and scenes. The patch itself checks
// the rest, such as the "-" of an added entry.
std::size_t known_length(std::string_view pointer) {
  const int steps = pointer.starts_with("/ai/") ? 4 : 2;
  std::size_t end = 0;
  for (int i = 0; i < steps && end != std::string_view::npos; ++i)
    end = pointer.find('/', end + 1);
  return std::min(end, pointer.size());
}

// Replaces the scene's name by its number. Returns the place that the pointer names.
Target resolve(cJSON& operation, const char* key) {
  const cJSON* pointer = cJSON_GetObjectItemCaseSensitive(&operation, key);
  if (cJSON_IsString(pointer) == 0 || pointer->valuestring[0] != '/') {
    throw Error(ErrorKind::kInput, "an operation needs a \"" + std::string(key) +
                                       R"(" such as "/csc/cscHue": )" +
                                       pqclient::print_json(operation));
  }
  const std::string text = pointer->valuestring;
  const std::size_t length = known_length(text);
  const Target target = pqclient::parse_target(std::string_view(text).substr(0, length));
  const std::string resolved = tree_pointer(target) + text.substr(length);
  cJSON_ReplaceItemInObjectCaseSensitive(&operation, key,
                                         pqclient::make_string(resolved).release());
  return target;
}

// Applies one operation to a fresh copy, because a test sorts the members that it compares.
JsonPtr apply(const cJSON& operation, const cJSON& sections) {
  JsonPtr patched = pqclient::copy_json(sections);
  JsonPtr array(cJSON_CreateArray());
  add_element(*array, pqclient::copy_json(operation));
  if (const int status = cJSONUtils_ApplyPatchesCaseSensitive(patched.get(), array.get());
      status != 0) {
    throw Error(ErrorKind::kInput, "this operation fails: " + pqclient::print_json(operation));
  }
  const cJSON* name = cJSON_GetObjectItemCaseSensitive(&operation, "op");
  if (cJSON_IsString(name) != 0 && std::string_view(name->valuestring) == "test") {
    return pqclient::copy_json(sections);
  }
  return patched;
}

// Queries the sections that the operations name.
SectionTree read_sections(Session& session, cJSON& operations) {
  SectionTree sections;
  for (cJSON* operation = operations.child; operation != nullptr; operation = operation->next) {
    for (const char* key : {"path", "from"}) {
      if (key == std::string_view("from") &&
          cJSON_GetObjectItemCaseSensitive(operation, key) == nullptr) {
        continue;
      }
      const Target section = resolve(*operation, key).whole_section();
      if (sections.find(section) == nullptr) sections.add(section, session.read_section(section));
    }
  }
  return sections;
}

std::vector<PlannedWrite> plan(const SectionTree& before, const SectionTree& asked) {
  std::vector<PlannedWrite> writes;
  for (const Target& section : pqclient::sections_in_writing_order()) {
    const cJSON* old = before.find(section);
    if (old == nullptr) continue;
    const cJSON* value = asked.find(section);
    if (value == nullptr) {
      throw Error(ErrorKind::kInput, "a section cannot be removed: " + section.text());
    }
    check_section(section, *value, *old);
    auto write = plan_difference(section, pqclient::copy_json(*old), pqclient::copy_json(*value));
    if (write) writes.push_back(std::move(*write));
  }
  return writes;
}

void patch(Session& session, const Arguments& arguments) {
  const JsonPtr operations = read_patch(arguments.file);
  if (!arguments.is_dry_run) session.require_writable();
  const SectionTree before = read_sections(session, *operations);
  SectionTree asked(pqclient::copy_json(before.json()));
  for (const cJSON* operation = operations->child; operation != nullptr;
       operation = operation->next) {
    asked = SectionTree(apply(*operation, asked.json()));
  }
  write_all(session, plan(before, asked), {.is_dry_run = arguments.is_dry_run});
}

}  // namespace

void add_patch(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax(
      add_command(
          grammar,
          {.name = "patch",
           .group = kChange,
           .about = "Apply a JSON Patch file to both documents",
           .more =
               R"(Accepts all six operations of RFC 6902. A path is a place with a leading slash: "/csc/cscHue",
"/ai/dci/nature-sky/dciEnable". The operations are applied and checked on this machine, in order;
then each section that differs is sent once. If any operation is wrong, nothing is sent.

Example:
  echo '[{"op":"replace","path":"/csc/cscHue","value":256},
         {"op":"copy","from":"/gamma/gammaTab_R","path":"/gamma/gammaTab_B"}]' | pqctl patch -
)"},
          [arguments](Session& session) { patch(session, *arguments); }))
      .word("file", {"FILE", "The operations; - is standard input"}, arguments->file,
            Need::kRequired)
      .flag("-n,--dry-run", "Print the operations, send nothing", arguments->is_dry_run);
}

#include <cjson/cJSON_Utils.h>

#include <CLI/CLI.hpp>
#include <array>
#include <iostream>
#include <memory>
#include <string>

#include "commands.h"
#include "files.h"
#include "pqclient/change.h"
#include "pqclient/check.h"
#include "pqclient/error.h"
#include "report_change.h"

namespace {

using pqclient::Error;
using pqclient::ErrorKind;
using pqclient::JsonPtr;
using pqclient::Target;
using pqclient::TuningClient;

// csc comes last: a write to gamma loads the tables without the gains of csc, which the write to
// csc brings back.
constexpr std::array kWritingOrder = {"gamma", "dci", "acm", "sharp", "csc"};

// An array of operations; a single one may stand there without its array.
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
                path + " holds no JSON Patch: an array of operations such as " + kExample);
  }
  return patch;
}

// Section and member that a pointer names. What stands below, the patch itself finds out.
Target checked_target(const cJSON& operation, const char* key) {
  const cJSON* pointer = cJSON_GetObjectItemCaseSensitive(&operation, key);
  if (cJSON_IsString(pointer) == 0 || pointer->valuestring[0] != '/') {
    throw Error(ErrorKind::kInput, "an operation needs a \"" + std::string(key) +
                                       R"(" such as "/csc/cscHue": )" +
                                       pqclient::print_json(operation));
  }
  const std::string path = pointer->valuestring;
  const std::size_t member_end = path.find('/', path.find('/', 1) + 1);
  return pqclient::parse_target(
      path.find('/', 1) == std::string::npos ? path : path.substr(0, member_end));
}

// The board's section under its name in `sections`; asked for at first need.
void need_section(TuningClient& client, const Target& target, cJSON& sections) {
  const std::string name(target.section->name);
  if (pqclient::last_member(sections, name) != nullptr) return;
  const pqclient::Answer answer = client.query_pq(target.section_pointer());
  if (cJSON_IsObject(answer.value) == 0) {
    throw Error(ErrorKind::kBadAnswer, "the answer holds no " + name);
  }
  pqclient::add_member(sections, name.c_str(), pqclient::copy_json(*answer.value));
}

void need_sections(TuningClient& client, const cJSON& operation, cJSON& sections) {
  need_section(client, checked_target(operation, "path"), sections);
  if (cJSON_GetObjectItemCaseSensitive(&operation, "from") != nullptr) {
    need_section(client, checked_target(operation, "from"), sections);
  }
}

// One operation at a time, and on a fresh copy: a test sorts the members of what it compares.
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

// The sections that the operations name, as the board has them.
JsonPtr read_sections(TuningClient& client, const cJSON& operations) {
  JsonPtr sections(cJSON_CreateObject());
  for (const cJSON* operation = operations.child; operation != nullptr;
       operation = operation->next) {
    need_sections(client, *operation, *sections);
  }
  return sections;
}

JsonPtr apply_all(const cJSON& operations, const cJSON& sections) {
  JsonPtr patched = pqclient::copy_json(sections);
  for (const cJSON* operation = operations.child; operation != nullptr;
       operation = operation->next) {
    patched = apply(*operation, *patched);
  }
  return patched;
}

void check_sections(const cJSON& before, const cJSON& asked) {
  for (const cJSON* section = before.child; section != nullptr; section = section->next) {
    const cJSON* after = pqclient::last_member(asked, section->string);
    if (after == nullptr) {
      throw Error(ErrorKind::kInput,
                  std::string("a section cannot be removed: ") + section->string);
    }
    check_section(*pqclient::find_section(section->string), *after, *section);
  }
}

// The sections that differ, one after the other.
void store_sections(TuningClient& client, const cJSON& before, const cJSON& asked,
                    ChangeReport& report) {
  for (const char* name : kWritingOrder) {
    const cJSON* old = pqclient::last_member(before, name);
    const cJSON* after = pqclient::last_member(asked, name);
    if (old == nullptr || cJSON_Compare(old, after, 1) != 0) continue;
    const Target section = pqclient::parse_target(name);
    const pqclient::Answer answer = pqclient::store(client, section, *after);
    report.add(name, old, *after, answer.value);
  }
}

struct Arguments {
  std::string file;
};

void patch(Session& session, const Arguments& arguments) {
  const JsonPtr operations = read_patch(arguments.file);
  session.require_writable();
  TuningClient& client = session.client();
  const JsonPtr before = read_sections(client, *operations);
  const JsonPtr asked = apply_all(*operations, *before);
  check_sections(*before, *asked);
  if (cJSON_Compare(before.get(), asked.get(), 1) != 0) {
    session.note("the board has all that already, nothing sent");
  }

  ChangeReport report(session.options().json);
  try {
    store_sections(client, *before, *asked, report);
  } catch (const Error&) {
    report.print(std::cout);  // what was stored before the trouble
    throw;
  }
  report.print(std::cout);
  report.throw_unless_stored();
}

}  // namespace

void add_patch(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command =
      add_command(grammar,
                  {.name = "patch",
                   .group = kChange,
                   .about = "Apply a JSON Patch file; sections that change are sent whole",
                   .more = ""},
                  [arguments](Session& session) { patch(session, *arguments); });
  command
      .add_option("file", arguments->file,
                  "Operations as in RFC 6902, with paths such as /csc/cscHue; - is standard input")
      ->option_text("FILE")
      ->required();
}

#include "pqclient/change.h"

#include <string_view>

namespace pqclient {
namespace {

// A request up to this size reaches the board in one piece over any link, and is then handled
// without the buffer that leftovers are in.
constexpr std::size_t kAlwaysOnePiece = 1024;

bool is_equal(const cJSON* one, const cJSON* other) {
  return one != nullptr && other != nullptr && cJSON_Compare(one, other, 1) != 0;
}

Answer write_and_read_back(TuningClient& client, const Target& target, const cJSON& value) {
  client.write(target.document, *replace_operation(target.pointer(), value));
  return client.query(target.document, target.section_pointer());
}

void compare_below(const std::string& path, const cJSON* before, const cJSON& asked,
                   const cJSON* stored, std::vector<ChangedValue>& changes) {
  if (is_equal(before, &asked) && is_equal(stored, &asked)) return;
  if (asked.child == nullptr) {
    changes.push_back({path, before, &asked, stored});
    return;
  }
  // By the kind of the parent: an entry that a patch has put into an array still has a name.
  const bool is_object = cJSON_IsObject(&asked) != 0;
  int index = 0;
  for (const cJSON* child = asked.child; child != nullptr; child = child->next, ++index) {
    const auto same_in = [&](const cJSON* tree) {
      if (tree == nullptr) return tree;
      return is_object ? last_member(*tree, child->string) : element(*tree, index);
    };
    const std::string name = is_object ? child->string : std::to_string(index);
    std::string below = path;
    below.append("/").append(name);
    compare_below(below, same_in(before), *child, same_in(stored), changes);
  }
}

}  // namespace

Answer store(TuningClient& client, const Target& target, const cJSON& value) {
  Answer answer = write_and_read_back(client, target, value);
  const bool is_stored = answer.value != nullptr && is_equal(target.find_in(*answer.value), &value);
  if (is_stored || print_json(value).size() < kAlwaysOnePiece) return answer;
  client.clear_upload_buffer();
  return write_and_read_back(client, target, value);
}

bool ChangedValue::is_stored_as_asked() const {
  return is_equal(asked, stored);
}

std::vector<ChangedValue> compare_change(const std::string& path, const cJSON* before,
                                         const cJSON& asked, const cJSON* stored) {
  std::vector<ChangedValue> changes;
  compare_below(path, before, asked, stored, changes);
  return changes;
}

}  // namespace pqclient

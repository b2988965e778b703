#include "pqclient/change.h"

#include <string_view>
#include <utility>

namespace pqclient {
namespace {

// A request up to this size arrives in one piece over any link, so leftovers of an interrupted
// upload cannot damage it.
constexpr std::size_t kAlwaysOnePiece = 1024;

bool is_equal(const cJSON* one, const cJSON* other) {
  return one != nullptr && other != nullptr && cJSON_Compare(one, other, 1) != 0;
}

bool is_same(const cJSON* one, const cJSON* other) {
  return one == other || is_equal(one, other);
}

Answer update_and_query(TuningClient& client, const Target& target, const cJSON& value) {
  client.update(target.document, *replace_operation(target.pointer(), value));
  return client.query(target.document, target.section_pointer());
}

// A position in the three trees that are walked together.
struct Place {
  std::string path;
  std::string table;  // set when this is an entry of an array
  int index = 0;
  const cJSON* before;
  const cJSON* asked;
  const cJSON* stored;

  [[nodiscard]] Place member(const char* name, int position) const {
    const auto in = [&](const cJSON* tree) {
      return tree != nullptr ? last_member(*tree, name) : nullptr;
    };
    return {.path = path + "/" + name,
            .table = "",
            .index = position,
            .before = in(before),
            .asked = in(asked),
            .stored = in(stored)};
  }
};

// The entries of an array in order. Looking each one up by index would walk the list every time.
class Entries {
 public:
  explicit Entries(const cJSON* array)
      : next_(cJSON_IsArray(array) != 0 ? array->child : nullptr) {}

  // Null after the last one.
  const cJSON* take() { return next_ != nullptr ? std::exchange(next_, next_->next) : nullptr; }

 private:
  const cJSON* next_;
};

bool has_scenes(const Target& place) {
  return place.document == Document::kAipq && !place.scene;
}

std::string name_of_entry(bool is_scene, int index) {
  const auto number = static_cast<std::size_t>(index);
  return is_scene && number < kScenes.size() ? std::string(kScenes.at(number))
                                             : std::to_string(index);
}

void compare_below(const Place& place, bool entries_are_scenes,
                   std::vector<ChangedValue>& changes) {
  const auto& [path, table, index, before, asked, stored] = place;
  if (is_same(before, asked) && is_same(stored, asked)) return;
  // The walk follows the wanted value, or the old one if the value is to be removed.
  const cJSON* shape = asked != nullptr ? asked : before;
  if (shape == nullptr || shape->child == nullptr) {
    changes.push_back({path, table, index, before, asked, stored});
    return;
  }
  // Decided by the parent's type: an entry that a patch has put into an array still has a name.
  const bool is_object = cJSON_IsObject(shape) != 0;
  Entries before_entries(before);
  Entries asked_entries(asked);
  Entries stored_entries(stored);
  int position = 0;
  for (const cJSON* child = shape->child; child != nullptr; child = child->next, ++position) {
    const Place below = is_object ? place.member(child->string, position)
                                  : Place{path + "/" + name_of_entry(entries_are_scenes, position),
                                          path,
                                          position,
                                          before_entries.take(),
                                          asked_entries.take(),
                                          stored_entries.take()};
    compare_below(below, false, changes);
  }
}

// The only child that differs; null if several do, or if the two have different children.
const cJSON* only_difference(const cJSON& before, const cJSON& asked, int& index) {
  const bool is_object = cJSON_IsObject(&asked) != 0;
  if (is_object != (cJSON_IsObject(&before) != 0)) return nullptr;
  const cJSON* found = nullptr;
  const cJSON* old = before.child;
  const cJSON* item = asked.child;
  for (int i = 0; old != nullptr && item != nullptr; old = old->next, item = item->next, ++i) {
    if (is_object && std::string_view(old->string) != item->string) return nullptr;
    if (is_identical(*old, *item)) continue;
    if (found != nullptr) return nullptr;
    found = item;
    index = i;
  }
  return old == nullptr && item == nullptr ? found : nullptr;
}

}  // namespace

Target narrowest_difference(const Target& section, const cJSON& before, const cJSON& asked) {
  Target place = section.whole_section();
  for (;;) {
    const cJSON* old = place.find_in(before);
    const cJSON* value = place.find_in(asked);
    int index = 0;
    const bool can_go_on = old != nullptr && value != nullptr && !place.index;
    const cJSON* only = can_go_on ? only_difference(*old, *value, index) : nullptr;
    if (only == nullptr) return place;
    if (has_scenes(place)) {
      place.scene = index;
    } else if (place.member == nullptr) {
      place.member = find_member(*place.section, only->string);
      if (place.member == nullptr) return place;  // a name that only the board knows
    } else {
      place.index = index;
    }
  }
}

Answer store(TuningClient& client, const Target& target, const cJSON& value) {
  Answer answer = update_and_query(client, target, value);
  const bool is_stored = answer.value != nullptr && is_equal(target.find_in(*answer.value), &value);
  if (is_stored || print_json(value).size() < kAlwaysOnePiece) return answer;
  client.clear_upload_buffer();
  return update_and_query(client, target, value);
}

bool ChangedValue::is_stored_as_asked() const {
  return is_same(asked, stored);
}

std::vector<ChangedValue> compare_change(const Target& place, const cJSON* before,
                                         const cJSON* asked, const cJSON* stored) {
  std::vector<ChangedValue> changes;
  Target table = place;
  table.index.reset();
  compare_below({.path = place.text(),
                 .table = place.index ? table.text() : "",
                 .index = place.index.value_or(0),
                 .before = before,
                 .asked = asked,
                 .stored = stored},
                has_scenes(place), changes);
  return changes;
}

}  // namespace pqclient

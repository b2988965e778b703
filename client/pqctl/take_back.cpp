#include "take_back.h"

#include <algorithm>
#include <string>

#include "pqclient/change.h"

namespace {

using pqclient::JsonPtr;

// `current` with the values of `before` wherever `before` and `after` differ. Counts the values
// that equal neither.
JsonPtr taken_back(const cJSON& before, const cJSON& after, const cJSON* current, int& changed) {
  if (current != nullptr && cJSON_Compare(&before, &after, 1) != 0) {
    return pqclient::copy_json(*current);
  }
  const bool is_tree = before.child != nullptr && current != nullptr && current->child != nullptr &&
                       cJSON_GetArraySize(&before) == cJSON_GetArraySize(&after) &&
                       cJSON_GetArraySize(&before) == cJSON_GetArraySize(current);
  if (!is_tree) {
    const bool is_known = current != nullptr && (cJSON_Compare(current, &after, 1) != 0 ||
                                                 cJSON_Compare(current, &before, 1) != 0);
    if (!is_known) ++changed;
    return pqclient::copy_json(before);
  }
  const bool is_object = cJSON_IsObject(&before) != 0;
  JsonPtr tree(is_object ? cJSON_CreateObject() : cJSON_CreateArray());
  const cJSON* now = current->child;
  for (const cJSON *old = before.child, *fresh = after.child; old != nullptr && fresh != nullptr;
       old = old->next, fresh = fresh->next, now = now->next) {
    if (is_object) {
      const cJSON* same = pqclient::last_member(*current, old->string);
      const cJSON* same_after = pqclient::last_member(after, old->string);
      pqclient::add_member(
          *tree, old->string,
          taken_back(*old, same_after != nullptr ? *same_after : *fresh, same, changed));
    } else {
      pqclient::add_element(*tree, taken_back(*old, *fresh, now, changed));
    }
  }
  return tree;
}

}  // namespace

std::vector<PlannedWrite> plan_take_back(Session& session, const HistoryEntry& entry) {
  std::vector<PlannedWrite> writes;
  int changed = 0;
  for (const HistoryChange& change : entry.changes) {
    JsonPtr section = session.read_section(change.place);
    JsonPtr asked = pqclient::copy_json(*section);
    const cJSON* current = change.place.find_in(*section);
    change.place.replace_in(asked, taken_back(*change.before, *change.after, current, changed));
    auto write =
        plan_difference(change.place.whole_section(), std::move(section), std::move(asked));
    if (write) writes.push_back(std::move(*write));
  }
  if (changed > 0) {
    session.note(std::to_string(changed) +
                 (changed == 1 ? " value was changed by something else since change "
                               : " values were changed by something else since change ") +
                 std::to_string(entry.number) +
                 (changed == 1 ? "; it is reset, too" : "; they are reset, too"));
  }
  return writes;
}

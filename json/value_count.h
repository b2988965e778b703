// Estimates the memory of a JSON text's tree before it is built.
#ifndef JSON_VALUE_COUNT_H_
#define JSON_VALUE_COUNT_H_

#include <cstddef>
#include <string_view>

namespace pq {

struct ValueCount {
  size_t values = 0;   // at least as many as the text has
  size_t strings = 0;  // names and texts
};

// Counts without parsing, so also in a text that is not JSON.
ValueCount count_values(std::string_view text);

// Bytes that the tree of a text of this size takes: at most, give or take the allocator's own.
size_t tree_memory(ValueCount count, size_t text_size);

}  // namespace pq

#endif  // JSON_VALUE_COUNT_H_

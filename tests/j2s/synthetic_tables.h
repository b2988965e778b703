// Synthetic type tables, for features that the picture-quality parameters do not use.
#ifndef TESTS_J2S_SYNTHETIC_TABLES_H_
#define TESTS_J2S_SYNTHETIC_TABLES_H_

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "j2s/j2s.h"

namespace j2s_test {

using Json = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;
inline Json own(cJSON* item) {
  return {item, &cJSON_Delete};
}
inline Json parse(const std::string& text) {
  return own(cJSON_Parse(text.c_str()));
}
inline std::string print(const cJSON* item) {
  const std::unique_ptr<char, decltype(&std::free)> text(cJSON_PrintUnformatted(item), &std::free);
  return text == nullptr ? "" : text.get();
}

// The fields of a record, without the chain.
struct Field {
  const char* name;
  uint8_t type;
  uint8_t flags;
  uint32_t offset;
  uint32_t elem_size;
  uint16_t elem_count;
  uint32_t base_elem_size;
  int16_t struct_ref = -1;
  int16_t enum_ref = -1;
  int16_t len_obj = -1;
};

class Tables {
 public:
  Tables() {
    context_.owns_data = 1;
    context_.enum_table = &enum_;
    context_.enum_count = 1;
    context_.enum_value_table = &values_[0];
    context_.enum_value_count = 2;
  }
  ~Tables() { j2s_deinit(&context_); }
  Tables(const Tables&) = delete;
  Tables& operator=(const Tables&) = delete;

  void add_struct(const char* name, const std::vector<Field>& fields) {
    auto next = static_cast<int16_t>(objs_.size());
    const j2s_struct structure = {{}, fields.empty() ? int16_t{-1} : next};
    structs_.push_back(named(name, structure));
    for (const Field& f : fields) {
      next = &f == &fields.back() ? int16_t{-1} : static_cast<int16_t>(next + 1);
      const j2s_obj obj = {{},           f.type,       f.flags,          f.offset,
                           f.elem_size,  f.elem_count, f.base_elem_size, next,
                           f.struct_ref, f.enum_ref,   f.len_obj};
      objs_.push_back(named(f.name, obj));
    }
  }

  [[nodiscard]] int index_of(const std::string& member) const {
    const auto is_it = [&](const j2s_obj& obj) { return member == &obj.name[0]; };
    return static_cast<int>(std::find_if(objs_.begin(), objs_.end(), is_it) - objs_.begin());
  }

  // The first structure is the root; one enumeration names 0 and 5.
  j2s_ctx* context() {
    context_.obj_table = objs_.data();
    context_.obj_count = static_cast<int>(objs_.size());
    context_.struct_table = structs_.data();
    context_.struct_count = static_cast<int>(structs_.size());
    return &context_;
  }

  // For checks that the tables do not change.
  [[nodiscard]] std::string bytes() const {
    return {reinterpret_cast<const char*>(objs_.data()), objs_.size() * sizeof(j2s_obj)};
  }

  int load(const std::string& json, void* structure) {
    return j2s_json_to_struct(context(), parse(json).get(), nullptr, structure);
  }

  std::string dump(const void* structure) {
    return print(own(j2s_struct_to_json(context(), nullptr, structure)).get());
  }

 private:
  template <typename Record>
  static Record named(const char* name, Record record) {
    std::strncpy(&record.name[0], name, sizeof record.name - 1);
    return record;
  }

  std::vector<j2s_obj> objs_;
  std::vector<j2s_struct> structs_;
  j2s_enum enum_ = {"mode_names", 0, 2};
  j2s_enum_value values_[2] = {{"OFF", 0}, {"ON", 5}};
  j2s_ctx context_ = {};
};

// One structure with every kind of member.
struct Inner {
  int32_t x;
};

struct Shapes {
  int32_t before[2];
  int32_t four[4];
  int16_t grid[2][3];
  char label[8];
  char words[2][4];
  char* text;
  int32_t mode;  // 0: OFF, 5: ON
  Inner pair[2];
  uint16_t count;  // of list and rows
  int32_t* list;
  int16_t (*rows)[2];
  char** names;  // name_count of them
  int32_t name_count;
};

class ShapeTables : public Tables {
 public:
  ShapeTables() {
    constexpr int16_t kCount = 8;
    constexpr int16_t kNameCount = 12;
    constexpr uint8_t kGrid = J2S_FLAG_ARRAY | J2S_FLAG_ARRAY_OF_ARRAYS;
    constexpr uint8_t kRows = J2S_FLAG_ARRAY | J2S_FLAG_POINTER | J2S_FLAG_POINTER_TO_ARRAY;
    constexpr uint8_t kNames = J2S_FLAG_POINTER | J2S_FLAG_POINTER_TO_POINTER;
    add_struct(
        "shapes",
        {{"before", J2S_TYPE_INT32, J2S_FLAG_ARRAY, offsetof(Shapes, before), 4, 2, 4},
         {"four", J2S_TYPE_INT32, J2S_FLAG_ARRAY, offsetof(Shapes, four), 4, 4, 4},
         {"grid", J2S_TYPE_INT16, kGrid, offsetof(Shapes, grid), 6, 2, 2},
         {"label", J2S_TYPE_STRING, J2S_FLAG_ARRAY, offsetof(Shapes, label), 1, 8, 1},
         {"words", J2S_TYPE_STRING, kGrid, offsetof(Shapes, words), 4, 2, 1},
         {"text", J2S_TYPE_STRING, J2S_FLAG_POINTER, offsetof(Shapes, text), 8, 1, 8},
         {"mode", J2S_TYPE_INT32, 0, offsetof(Shapes, mode), 4, 1, 4, -1, 0},
         {"pair", J2S_TYPE_STRUCT, J2S_FLAG_ARRAY, offsetof(Shapes, pair), 4, 2, 4, 1},
         {"count", J2S_TYPE_UINT16, 0, offsetof(Shapes, count), 2, 1, 2},
         {"list", J2S_TYPE_INT32, J2S_FLAG_POINTER, offsetof(Shapes, list), 4, 1, 4, -1, -1,
          kCount},
         {"rows", J2S_TYPE_INT16, kRows, offsetof(Shapes, rows), 4, 1, 2, -1, -1, kCount},
         {"names", J2S_TYPE_STRING, kNames, offsetof(Shapes, names), 8, 1, 8, -1, -1, kNameCount},
         {"name_count", J2S_TYPE_INT32, 0, offsetof(Shapes, name_count), 4, 1, 4},
         {"nothing", J2S_TYPE_STRUCT, 0, 0, 0, 1, 0, 2}});
    add_struct("inner", {{"x", J2S_TYPE_INT32, 0, 0, 4, 1, 4}});
    add_struct("empty", {});
  }
};

// For checks that a structure does not change.
inline std::string bytes_of(const Shapes& shapes) {
  return {reinterpret_cast<const char*>(&shapes), sizeof shapes};
}

// Frees the strings that the structure's owner must free.
inline void free_strings(Shapes& shapes) {
  std::free(std::exchange(shapes.text, nullptr));
  for (int i = 0; shapes.names != nullptr && i < shapes.name_count; ++i) {
    std::free(std::exchange(shapes.names[i], nullptr));
  }
}

}  // namespace j2s_test

#endif  // TESTS_J2S_SYNTHETIC_TABLES_H_

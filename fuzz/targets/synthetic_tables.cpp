// JSON to structure and back, with tables that contain every kind of member. Lines: a document, one
// that is loaded over it, and a query.
#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "fuzz/support/check.h"
#include "fuzz/support/input.h"
#include "tests/j2s/synthetic_tables.h"

namespace {

using j2s_test::Json;
using j2s_test::own;
using j2s_test::Shapes;
using j2s_test::ShapeTables;

// Longer arrays are loaded, but take too long to print.
constexpr int kMaxPrinted = 64;

// The structure, surrounded by memory that must not be written. The destructor frees its strings.
class Guarded {
 public:
  Guarded() {
    before_.fill(kGuard);
    after_.fill(kGuard);
  }
  ~Guarded() {
    j2s_test::free_strings(shapes_);
    const bool untouched = std::ranges::count(before_, kGuard) == kGuardSize &&
                           std::ranges::count(after_, kGuard) == kGuardSize;
    fuzz::require(untouched, "nothing outside the structure is written");
  }

  Shapes& shapes() { return shapes_; }
  bool can_be_printed() const {
    return shapes_.count <= kMaxPrinted && shapes_.name_count <= kMaxPrinted;
  }

 private:
  static constexpr char kGuard = 0x5A;
  static constexpr int kGuardSize = 64;
  std::array<char, kGuardSize> before_;
  Shapes shapes_ = {};
  std::array<char, kGuardSize> after_;
};

Json parse(std::string_view text) {
  return own(cJSON_ParseWithLength(text.data(), text.size()));
}

void query(ShapeTables& tables, cJSON* question, Shapes& shapes) {
  const std::string before = j2s_test::bytes_of(shapes);
  // The members by name, because answers move them in the query.
  for (int index = 0; index < tables.context()->obj_count; ++index) {
    const char* name = tables.context()->obj_table[index].name;
    cJSON* item = cJSON_GetObjectItemCaseSensitive(question, name);
    if (item == nullptr || std::strcmp(name, "x") == 0) continue;
    (void)_j2s_json_to_obj(tables.context(), item, question, index, &shapes, true);
  }
  (void)j2s_test::print(question);
  fuzz::require(j2s_test::bytes_of(shapes) == before, "a query changes nothing");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  ShapeTables tables;
  ShapeTables other_tables;
  const std::string records = tables.bytes();
  Guarded loaded;
  Guarded again;
  const auto load = [&](std::string_view json) {
    return j2s_json_to_struct(tables.context(), parse(json).get(), nullptr, &loaded.shapes()) >= 0;
  };
  const bool first = load(input.line());
  j2s_test::free_strings(loaded.shapes());  // a load that changes their number would lose them
  const bool second = load(input.line());
  if (loaded.can_be_printed()) {
    const std::string text = tables.dump(&loaded.shapes());
    (void)other_tables.load(text, &again.shapes());
    // After a failed load a length may belong to an array that is not there.
    const bool same = other_tables.dump(&again.shapes()) == text;
    fuzz::require(same || !first || !second, "a saved document loads unchanged");
    query(tables, parse(input.line()).get(), loaded.shapes());
  }
  fuzz::require(tables.bytes() == records, "the tables do not change");
  return 0;
}

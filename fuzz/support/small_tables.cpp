// The daemon's type tables with short arrays. Members, names, types and offsets are unchanged, so
// every path of a conversion is taken, only fewer times.
#include <algorithm>
#include <vector>

#include "fuzz/support/board.h"
#include "j2s/generated_tables.h"

// The generated tables; the linker redirects other calls to the function below (see
// CMakeLists.txt).
const j2s::GeneratedTables& real_tables() asm("__real__ZN3j2s16generated_tablesEv");
const j2s::GeneratedTables& chosen_tables() asm("__wrap__ZN3j2s16generated_tablesEv");

namespace {

constexpr uint16_t kMaxArray = 2;
constexpr int kMaxMembers = 8;  // in a structure

bool full = true;

class SmallTables {
 public:
  SmallTables() {
    const j2s::GeneratedTables& real = real_tables();
    objs_.assign(real.objs.begin(), real.objs.end());
    structs_.assign(real.structs.begin(), real.structs.end());
    for (j2s_obj& obj : objs_)
      obj.elem_count = std::min<uint16_t>(obj.elem_count, kMaxArray);
    for (const j2s_struct& structure : structs_)
      cut_chain(structure.first_obj);
    working_objs_ = objs_;
    working_structs_ = structs_;
    tables_ = {real.magic, real.root_struct, objs_, structs_, working_objs_, working_structs_};
  }

  const j2s::GeneratedTables& tables() const { return tables_; }

 private:
  void cut_chain(int16_t index) {
    for (int count = 1; count < kMaxMembers && index >= 0; ++count)
      index = objs_[static_cast<size_t>(index)].next_obj;
    if (index >= 0) objs_[static_cast<size_t>(index)].next_obj = -1;
  }

  std::vector<j2s_obj> objs_, working_objs_;
  std::vector<j2s_struct> structs_, working_structs_;
  j2s::GeneratedTables tables_{};
};

}  // namespace

void fuzz::use_full_tables(bool on) {
  full = on;
}

bool fuzz::full_tables() {
  return full;
}

const j2s::GeneratedTables& chosen_tables() {
  static const SmallTables small;
  return full ? real_tables() : small.tables();
}

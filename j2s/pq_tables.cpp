// The tables that are compiled in: those of the picture-quality parameters.

#include "j2s/generated_tables.h"
#include "j2s/pq_schema.h"
#include "j2s/schema_tables.h"

namespace {

// Caches of one schema are told from those of another by this number. It is fixed for the schema
// as it stands; a change of any member needs a new one.
constexpr uint32_t kFingerprint = 115982392;

constexpr auto kTables =
    j2s::make_tables<struct csc, struct dci, struct acm, struct gamma, struct sharp,
                     struct pq_tuning_param, struct aipq_tuning_param, struct pq_config>();
constexpr int32_t kRootStruct = 7;

// What tools and stored caches rely on: a member that came, went or moved between structures.
static_assert(kTables.objs.size() == 109 && kTables.structs.size() == 8);
constexpr std::array<int16_t, 8> kFirstMembers = {0, 10, 19, 34, 39, 100, 105, 107};
constexpr std::array<int16_t, 8> kLastMembers = {9, 18, 33, 38, 99, 104, 106, 108};
static_assert([] {
  for (size_t i = 0; i < kFirstMembers.size(); ++i) {
    if (kTables.structs[i].first_obj != kFirstMembers[i]) return false;
    const auto last = static_cast<size_t>(kLastMembers[i]);
    if (kTables.objs[last].next_obj != -1) return false;
  }
  return true;
}());
// The cache file: header, members, structures.
static_assert(sizeof(j2s_ctx) + sizeof kTables.objs == 9672);
static_assert(sizeof(j2s_ctx) + sizeof kTables.objs + sizeof kTables.structs == 10200);

constinit auto working_tables = kTables;

constexpr j2s::GeneratedTables kGeneratedTables = {
    .magic = kFingerprint,
    .root_struct = kRootStruct,
    .objs = kTables.objs,
    .structs = kTables.structs,
    .working_objs = working_tables.objs,
    .working_structs = working_tables.structs,
};

}  // namespace

const j2s::GeneratedTables& j2s::generated_tables() {
  return kGeneratedTables;
}

// The tables that are compiled in: those of the picture-quality parameters.

#include <array>

#include "j2s/generated_tables.h"
#include "j2s/pq_schema.h"
#include "j2s/schema_tables.h"

namespace {

constexpr auto kTables =
    j2s::make_tables<struct csc, struct dci, struct acm, struct gamma, struct sharp,
                     struct pq_tuning_param, struct aipq_tuning_param, struct pq_config>();
constexpr int32_t kRootStruct = 7;  // pq_config, the last of them

// FNV-1a over all bytes of a table.
template <typename Table>
constexpr uint32_t checksum(uint32_t sum, const Table& table) {
  // The built-in: Android's standard library has no std::bit_cast.
  using Bytes = std::array<unsigned char, sizeof table>;
  for (const unsigned char byte : __builtin_bit_cast(Bytes, table)) {
    sum = (sum ^ byte) * 16777619U;
  }
  return sum;
}
constexpr uint32_t kChecksum = checksum(checksum(2166136261U, kTables.objs), kTables.structs);

// Caches of one schema are told from those of another by this number. The schema that shipped first
// has its own, which stored caches and tools know; any other one's follows from its members.
constexpr uint32_t kFirstFingerprint = 115982392;
constexpr uint32_t kFirstChecksum = 0x536F0FDD;
constexpr uint32_t kFingerprint = kFirstFingerprint + (kChecksum - kFirstChecksum);

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

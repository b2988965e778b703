// docs/documents.md, the client's table of members, and the daemon's: the three have to agree.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "j2s/j2s.h"
#include "pqclient/schema.h"

namespace {

// Name and type of each member, in the document's order.
using Members = std::vector<std::string>;
using Structures = std::map<std::string, Members>;

std::string type_name(const j2s_ctx& context, const j2s_obj& member) {
  static const std::map<int, std::string> kNames = {
      {J2S_TYPE_INT8, "int8"},     {J2S_TYPE_INT16, "int16"}, {J2S_TYPE_UINT16, "uint16"},
      {J2S_TYPE_UINT32, "uint32"}, {J2S_TYPE_STRING, "text"},
  };
  const std::string name = member.type == J2S_TYPE_STRUCT
                               ? context.struct_table[member.struct_ref].name
                               : kNames.at(member.type);
  return (member.flags & J2S_FLAG_ARRAY) == 0
             ? name
             : name + "[" + std::to_string(member.elem_count) + "]";
}

Structures in_the_daemon() {
  setenv("J2S_NO_CACHE", "1", 1);
  j2s_ctx context{};
  j2s_init(&context);
  Structures structures;
  for (int i = 0; i < context.struct_count; ++i) {
    Members& members = structures[context.struct_table[i].name];
    for (int index = context.struct_table[i].first_obj; index >= 0;) {
      const j2s_obj member = context.obj_table[index];
      members.push_back(member.name + std::string(" ") + type_name(context, member));
      index = member.next_obj;
    }
  }
  j2s_deinit(&context);
  return structures;
}

// The table below each heading "### `NAME`": | `member` | type | range | unit | meaning |
Structures in_the_documents() {
  Structures structures;
  std::ifstream file(DOCUMENTS);
  std::string structure;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("#")) structure = line.starts_with("### `") ? line.substr(5) : "";
    if (structure.empty() || !line.starts_with("| `")) continue;
    std::istringstream cells(line.substr(1));
    std::string member, type, range, unit, meaning;
    for (std::string* cell : {&member, &type, &range, &unit, &meaning}) {
      std::getline(cells, *cell, '|');
      EXPECT_GT(cell->size(), 2U) << "something is missing in: " << line;
    }
    structures[structure.substr(0, structure.size() - 1)].push_back(
        member.substr(2, member.size() - 4) + " " + type.substr(1, type.size() - 2));
  }
  return structures;
}

TEST(Documents, NameEveryMemberOfTheDaemonInItsOrder) {
  EXPECT_EQ(in_the_documents(), in_the_daemon());
}

TEST(Documents, AreWhatTheClientKnows) {
  const Structures daemon = in_the_daemon();
  for (const pqclient::Section& section : pqclient::sections()) {
    const Members& expected = daemon.at(std::string(section.name));
    ASSERT_EQ(section.members.size(), expected.size()) << section.name;
    for (size_t i = 0; i < expected.size(); ++i) {
      const pqclient::Member& member = section.members[i];
      EXPECT_TRUE(expected[i].starts_with(std::string(member.name) + " ")) << expected[i];
      const std::string size = "[" + std::to_string(member.count) + "]";
      EXPECT_EQ(member.is_table(), expected[i].ends_with(size)) << expected[i];
    }
  }
}

}  // namespace

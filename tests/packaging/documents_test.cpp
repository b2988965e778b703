// docs/documents.md, the client's table of members and the daemon's schema must agree.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "j2s/j2s.h"
#include "pqclient/schema.h"

namespace {

// One line per member, in the document's order: its name, a space, its type. All in one text,
// because for two different texts the test prints the lines that differ.
using Structures = std::map<std::string, std::string>;

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
    std::string& members = structures[context.struct_table[i].name];
    for (int index = context.struct_table[i].first_obj; index >= 0;) {
      const j2s_obj member = context.obj_table[index];
      members += member.name + std::string(" ") + type_name(context, member) + "\n";
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
    structures[structure.substr(0, structure.size() - 1)] +=
        member.substr(2, member.size() - 4) + " " + type.substr(1, type.size() - 2) + "\n";
  }
  return structures;
}

TEST(Documents, NameEveryMemberOfTheDaemonInItsOrder) {
  Structures documented = in_the_documents();
  for (const auto& [structure, members] : in_the_daemon()) {
    EXPECT_EQ(documented[structure], members)
        << "docs/documents.md (-) and j2s/pq_schema.h (+) differ in the members of " << structure
        << ": each has one line in both";
    documented.erase(structure);
  }
  EXPECT_TRUE(documented.empty()) << "docs/documents.md describes a structure that is not in "
                                  << "j2s/pq_schema.h: " << documented.begin()->first;
}

// Without the types: the client knows only the number of entries.
std::string names_and_sizes(const std::string& members) {
  std::istringstream lines(members);
  std::string known;
  for (std::string name, type; lines >> name >> type;) {
    known += name + type.substr(std::min(type.find('['), type.size())) + "\n";
  }
  return known;
}

TEST(Documents, AreWhatTheClientKnows) {
  Structures daemon = in_the_daemon();
  for (const pqclient::Section& section : pqclient::sections()) {
    const std::string name(section.name);
    std::string known;
    for (const pqclient::Member& member : section.members) {
      known += member.name;
      known += member.is_table() ? "[" + std::to_string(member.count) + "]\n" : "\n";
    }
    EXPECT_EQ(known, names_and_sizes(daemon[name]))
        << "client/schema.cpp (-) and j2s/pq_schema.h (+) differ in the members of " << name
        << ": pqctl needs a line for each, with its range";
  }
}

}  // namespace

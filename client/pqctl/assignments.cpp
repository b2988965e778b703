#include "assignments.h"

#include <algorithm>

#include "pqclient/error.h"

using pqclient::Assignment;
using pqclient::Target;

namespace {

// The smallest place that holds both, which are in one section.
Target common_place(const Target& one, const Target& other) {
  Target place = one.whole_section();
  if (one.scene != other.scene) return place;
  place.scene = one.scene;
  if (one.member != other.member) return place;
  place.member = one.member;
  if (one.index == other.index) place.index = one.index;
  return place;
}

PlannedWrite& write_to_section_of(const Target& target, Session& session,
                                  std::vector<PlannedWrite>& writes) {
  const auto found = std::ranges::find_if(writes, [&](const PlannedWrite& write) {
    return write.place.document == target.document && write.place.section == target.section;
  });
  if (found != writes.end()) {
    found->place = common_place(found->place, target);
    return *found;
  }
  pqclient::JsonPtr before = session.read_section(target);
  pqclient::JsonPtr asked = pqclient::copy_json(*before);
  writes.push_back({target, std::move(before), std::move(asked)});
  return writes.back();
}

}  // namespace

const char* const kAssignmentHelp =
    R"(PLACE is SECTION/MEMBER[/INDEX]. VALUE is a number, on or off, a text, or for a table all entries
with commas between them. +5 and -5 are steps from what is stored, of a table of all its entries;
where values may be negative (acm), -5 is the value and the steps are +=5 and -=5.
Of one section all is sent at once, and everything is checked before anything is sent. What is read
back proves what is stored; what the screen shows, a dump shows: pqctl dump out.

Examples:
  pqctl set csc/cscBrightness 300
  pqctl set csc/cscMode LOW_LATENCY_MODE csc/cscBrightness +5
  pqctl set csc/cscRGain=250 csc/cscBGain=240
  pqctl set gamma/gammaTab_R/512 -16
  pqctl set ai/dci/nature-sky/dciEnable off
)";

std::vector<Assignment> parse_assignments(const std::vector<std::string>& words) {
  std::vector<Assignment> assignments;
  for (auto word = words.begin(); word != words.end(); ++word) {
    // No place holds an equals sign; a text after it may.
    const std::size_t equals = word->find('=');
    if (equals != std::string::npos) {
      const bool is_step =
          equals > 0 && (word->at(equals - 1) == '+' || word->at(equals - 1) == '-');
      const std::size_t value = is_step ? equals - 1 : equals + 1;  // "+=5" is a value by itself
      assignments.push_back(pqclient::parse_assignment(word->substr(0, std::min(value, equals)),
                                                       word->substr(value)));
      continue;
    }
    const std::string& place = *word;
    if (++word == words.end()) {
      throw pqclient::Error(pqclient::ErrorKind::kInput,
                            "\"" + place + "\" has no value behind it: write PLACE VALUE");
    }
    assignments.push_back(pqclient::parse_assignment(place, *word));
  }
  return assignments;
}

std::vector<PlannedWrite> plan_assignments(Session& session,
                                           const std::vector<Assignment>& assignments) {
  std::vector<PlannedWrite> writes;
  for (const Assignment& assignment : assignments)
    assignment.apply_to(write_to_section_of(assignment.target, session, writes).asked);
  return writes;
}

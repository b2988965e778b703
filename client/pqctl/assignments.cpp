#include "assignments.h"

#include <algorithm>

#include "pqclient/error.h"

using pqclient::Assignment;
using pqclient::Target;

namespace {

// The smallest place that contains both; they must be in one section.
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
    R"(PLACE is SECTION/MEMBER[/INDEX]. VALUE is a number, on or off, a text, or for a table all its
entries with commas between them. +5 and -5 are steps from the stored value; for a table the step
applies to each entry. Where values may be negative (acm), -5 is the value and the steps are +=5
and -=5.
Each section is written once, after everything was checked. The read-back proves what is stored;
only a dump proves what is shown: pqctl dump out.

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
    // A place never contains an equals sign; the text after it may.
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
                            "\"" + place + "\" has no value: write PLACE VALUE");
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

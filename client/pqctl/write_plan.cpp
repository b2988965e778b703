#include "write_plan.h"

#include <algorithm>
#include <iostream>
#include <string_view>
#include <utility>

#include "effect.h"
#include "history.h"
#include "interrupt.h"
#include "pqclient/change.h"
#include "pqclient/error.h"
#include "report_change.h"

namespace {

using pqclient::Document;
using pqclient::Error;
using pqclient::JsonPtr;
using pqclient::Target;

bool is_same_section(const Target& one, const Target& other) {
  return one.document == other.document && one.section == other.section;
}

auto place_in_order(const PlannedWrite& write) {
  return std::ranges::find_if(pqclient::sections_in_writing_order(), [&](const Target& section) {
    return is_same_section(section, write.place);
  });
}

bool writes_to(const std::vector<PlannedWrite>& writes, const Target& section) {
  return std::ranges::any_of(
      writes, [&](const PlannedWrite& write) { return is_same_section(write.place, section); });
}

// The board loads new gamma tables without the gains of csc, and applies the gains at the next
// write to csc. So csc is written again, unchanged.
void add_gains(Session& session, std::vector<PlannedWrite>& writes) {
  const Target csc = pqclient::parse_target("csc");
  if (!writes_to(writes, pqclient::parse_target("gamma")) || writes_to(writes, csc)) return;
  JsonPtr value = session.read_section(csc);
  if (!has_gains(*value)) return;
  JsonPtr same = pqclient::copy_json(*value);
  writes.push_back({csc, std::move(value), std::move(same), true});
}

JsonPtr operation_of(const PlannedWrite& write) {
  return pqclient::replace_operation(write.place.pointer(), *write.place.find_in(*write.asked));
}

void print_operations(const Session& session, const std::vector<PlannedWrite>& writes) {
  const JsonPtr all(cJSON_CreateArray());
  for (const PlannedWrite& write : writes) {
    const char* document = write.place.document == Document::kPq ? "PQ" : "AIPQ";
    JsonPtr operation = operation_of(write);
    if (!session.options().json) {
      std::cout << document << ' ' << pqclient::print_json(*operation) << '\n';
      continue;
    }
    pqclient::add_member(*operation, "document", pqclient::make_string(document));
    pqclient::add_element(*all, std::move(operation));
  }
  if (session.options().json) std::cout << pqclient::print_json(*all) << '\n';
}

std::optional<int> note_in_history(Session& session, const std::vector<PlannedWrite>& writes,
                                   bool is_undo) {
  HistoryEntry entry;
  entry.command = session.command();
  entry.is_undo = is_undo;
  for (const PlannedWrite& write : writes) {
    const cJSON& before = *write.place.find_in(*write.before);
    const cJSON& after = *write.place.find_in(*write.asked);
    if (cJSON_Compare(&before, &after, 1) != 0) continue;
    entry.changes.push_back({write.place, pqclient::copy_json(before), pqclient::copy_json(after)});
  }
  if (entry.changes.empty()) return std::nullopt;
  try {
    return History(session.board()).add(std::move(entry));
  } catch (const Error& error) {
    session.note(std::string(error.what()) + ", so undo will not know this change");
    return std::nullopt;
  }
}

void note_effects(const Session& session, const PlannedWrite& write, const cJSON& section_value) {
  const cJSON* before = write.place.find_in(*write.before);
  const cJSON* asked = write.place.find_in(*write.asked);
  auto changes = compare_states(write.place, before, asked);
  for (const std::string& note : effect_notes(write.place, changes, section_value))
    session.note(note);
}

void write_one(Session& session, const PlannedWrite& write, bool reads_back, ChangeReport& report) {
  const cJSON* before = write.place.find_in(*write.before);
  const cJSON& asked = *write.place.find_in(*write.asked);
  if (!reads_back) {
    session.client().update(write.place.document, *operation_of(write));
    report.add(write.place, before, asked, nullptr, write.is_refresh);
    note_effects(session, write, *write.asked);
    return;
  }
  const pqclient::Answer answer = pqclient::store(session.client(), write.place, asked);
  const JsonPtr nothing(cJSON_CreateNull());
  const cJSON* stored = answer.value != nullptr ? write.place.find_in(*answer.value) : nullptr;
  report.add(write.place, before, asked, stored != nullptr ? stored : nothing.get(),
             write.is_refresh);
  note_effects(session, write, answer.value != nullptr ? *answer.value : *write.asked);
}

void print_report(const Session& session, const ChangeReport& report) {
  if (session.options().json) {
    report.print_json(std::cout);
  } else {
    report.print(std::cout, session.palette());
  }
  std::cout.flush();  // a reader may wait for it while a trial is running
}

std::string names_of(std::span<const PlannedWrite> writes) {
  std::string names;
  for (const PlannedWrite& write : writes)
    names += (names.empty() ? "" : ", ") + write.place.whole_section().text();
  return names;
}

// For several sections, of which the first `done` were written.
void note_progress(const Session& session, const std::vector<PlannedWrite>& writes,
                   std::size_t done, const WriteOptions& options) {
  if (writes.size() < 2) return;
  const std::span all(writes);
  session.note("written: " + (done > 0 ? names_of(all.first(done)) : "nothing") +
               "; not, or not certainly: " + names_of(all.subspan(done)) + options.remedy);
}

void write_each(Session& session, const std::vector<PlannedWrite>& writes,
                const WriteOptions& options, ChangeReport& report) {
  InterruptGuard guard;
  std::size_t done = 0;
  try {
    for (const PlannedWrite& write : writes) {
      if (options.heeds_interrupt && guard.is_interrupted()) throw Interrupted();
      if (session.is_interactive() && writes.size() > 1) {
        std::cerr << "writing " << names_of({&write, 1}) << " (" << done + 1 << " of "
                  << writes.size() << ")\n";
      }
      write_one(session, write, options.reads_back, report);
      ++done;
    }
  } catch (...) {
    print_report(session, report);
    note_progress(session, writes, done, options);
    throw;
  }
}

}  // namespace

std::optional<PlannedWrite> plan_difference(const Target& section, JsonPtr before, JsonPtr asked) {
  if (pqclient::is_identical(*before, *asked)) return std::nullopt;
  const Target place = narrowest_difference(section, *before, *asked);
  return PlannedWrite{place, std::move(before), std::move(asked)};
}

void write_all(Session& session, std::vector<PlannedWrite> writes, const WriteOptions& options) {
  if (!options.is_dry_run) session.require_writable();
  add_gains(session, writes);
  std::ranges::stable_sort(writes, {}, place_in_order);
  if (options.is_dry_run) {
    print_operations(session, writes);
    return;
  }
  if (writes.empty()) session.note("the board already has all these values, nothing sent");
  if (options.filing != Filing::kNot) {
    const auto number = note_in_history(session, writes, options.filing == Filing::kAsUndo);
    if (options.number != nullptr) *options.number = number;
  }
  ChangeReport report;
  write_each(session, writes, options, report);
  print_report(session, report);
  report.throw_unless_stored();
  if (options.heeds_interrupt && InterruptGuard::was_interrupted()) throw Interrupted();
}

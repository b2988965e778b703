#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backup_file.h"
#include "command_syntax.h"
#include "commands.h"
#include "pqclient/check.h"
#include "pqclient/error.h"
#include "time_text.h"
#include "write_plan.h"

namespace {

using pqclient::Document;
using pqclient::Error;
using pqclient::ErrorKind;
using pqclient::JsonPtr;
using pqclient::Target;

struct Arguments {
  std::string file;
  std::vector<std::string> only;
  bool is_dry_run = false;
  bool is_forced = false;
};

[[noreturn]] void refuse_shape(const Target& place) {
  throw Error(ErrorKind::kInput,
              "the backup's " + place.text() + " has another form than the board's, nothing sent");
}

// The backup's values for members that the board has, in the backup's order, and the board's own
// for members missing from the backup, which may come from an older or newer version.
JsonPtr merged(const Target& place, const cJSON& board, const cJSON& kept, Session& session) {
  if (cJSON_IsObject(&kept) == 0) refuse_shape(place);
  if (cJSON_IsObject(&board) == 0) return pqclient::copy_json(kept);  // the board lost this scene
  JsonPtr section(cJSON_CreateObject());
  for (const cJSON* item = kept.child; item != nullptr; item = item->next) {
    if (pqclient::last_member(board, item->string) != nullptr) {
      pqclient::add_member(*section, item->string, pqclient::copy_json(*item));
    } else {
      session.note("the board has no " + place.text() + "/" + item->string + ", which is skipped");
    }
  }
  for (const cJSON* item = board.child; item != nullptr; item = item->next) {
    if (pqclient::last_member(kept, item->string) != nullptr) continue;
    session.note("the backup has no " + place.text() + "/" + item->string +
                 ", which is left unchanged");
    pqclient::add_member(*section, item->string, pqclient::copy_json(*item));
  }
  return section;
}

JsonPtr merged_section(const Target& section, const cJSON& board, const cJSON& kept,
                       Session& session) {
  if (section.document == Document::kPq) return merged(section, board, kept, session);
  if (cJSON_IsArray(&kept) == 0 || cJSON_GetArraySize(&kept) != cJSON_GetArraySize(&board)) {
    refuse_shape(section);
  }
  JsonPtr scenes(cJSON_CreateArray());
  Target scene = section;
  scene.scene = 0;
  const cJSON* item = kept.child;
  for (const cJSON* old = board.child; old != nullptr; old = old->next, item = item->next) {
    pqclient::add_element(*scenes, merged(scene, *old, *item, session));
    if (*scene.scene + 1 < std::ssize(pqclient::kScenes)) ++*scene.scene;
  }
  return scenes;
}

// "csc,gamma", "ai/dci", also "csc/cscHue"; all sections if none is given.
std::vector<Target> wanted_places(const Arguments& arguments) {
  std::vector<Target> places;
  for (const std::string& place : arguments.only)
    places.push_back(pqclient::parse_target(place));
  if (places.empty()) {
    const auto all = pqclient::sections_in_writing_order();
    places.assign(all.begin(), all.end());
  }
  return places;
}

bool is_in(const Target& place, const Target& section) {
  return place.document == section.document && place.section == section.section;
}

// Empty if no place in this section is wanted, or the backup does not have the section.
std::optional<PlannedWrite> plan_section(Session& session, const Target& section,
                                         const std::vector<Target>& places, const Backup& backup) {
  const cJSON* kept = backup.documents.find(section);
  const bool is_wanted =
      std::ranges::any_of(places, [&](const Target& place) { return is_in(place, section); });
  if (!is_wanted || kept == nullptr) return std::nullopt;
  JsonPtr before = session.read_section(section);
  const JsonPtr all = merged_section(section, *before, *kept, session);
  JsonPtr asked = pqclient::copy_json(*before);
  for (const Target& place : places) {
    if (!is_in(place, section)) continue;
    const cJSON* value = place.find_in(*all);
    if (value != nullptr) place.replace_in(asked, pqclient::copy_json(*value));
  }
  // An intact backup is not checked: a board had stored these values, however odd they are.
  if (!backup.is_as_written) check_section(section, *asked, *before);
  auto write = plan_difference(section, pqclient::copy_json(*before), pqclient::copy_json(*asked));
  // Written even if nothing differs: an interrupted restore may have written gamma, and its tables
  // show without gains until csc is written.
  if (!write && section.document == Document::kPq && section.section->name == "csc") {
    return PlannedWrite{section, std::move(before), std::move(asked), true};
  }
  return write;
}

// Replacing one section of AI scenes moves it after the other one in the board's document.
// Replacing both keeps their order. So if either differs, both are written.
void write_scenes_whole(Session& session, std::vector<PlannedWrite>& writes) {
  const auto is_of_scenes = [](const PlannedWrite& write) {
    return write.place.document == Document::kAipq;
  };
  if (std::ranges::none_of(writes, is_of_scenes)) return;
  for (const Target& section : pqclient::sections_in_writing_order()) {
    if (section.document != Document::kAipq) continue;
    const auto planned = std::ranges::find_if(
        writes, [&](const PlannedWrite& write) { return is_in(write.place, section); });
    if (planned != writes.end()) {
      planned->place = section;
    } else {
      JsonPtr stored = session.read_section(section);
      JsonPtr copy = pqclient::copy_json(*stored);
      writes.push_back({section, std::move(stored), std::move(copy), true});
    }
  }
}

void check_checksum(const Backup& backup, const Arguments& arguments) {
  if (arguments.is_forced || !backup.is_damaged()) return;
  throw Error(ErrorKind::kInput,
              arguments.file +
                  " was changed after it was written, or is damaged: its checksum "
                  "does not match. --force uses it anyway");
}

// Must be called after the board has answered.
void check_platform(Session& session, const Backup& backup, const Arguments& arguments) {
  if (arguments.is_forced) return;
  const auto platform = session.client().platform();
  if (backup.platform && platform && *backup.platform != *platform) {
    throw Error(ErrorKind::kInput, arguments.file + " is from a board of platform " +
                                       std::to_string(*backup.platform) + ", this one has " +
                                       std::to_string(*platform) +
                                       ", nothing sent. --force "
                                       "restores it anyway");
  }
}

void restore(Session& session, const Arguments& arguments) {
  const Backup backup = read_backup(arguments.file);
  check_checksum(backup, arguments);
  if (!arguments.is_dry_run) session.require_writable();
  const std::vector<Target> places = wanted_places(arguments);
  std::vector<PlannedWrite> writes;
  for (const Target& section : pqclient::sections_in_writing_order()) {
    if (auto write = plan_section(session, section, places, backup)) {
      writes.push_back(std::move(*write));
    }
  }
  if (arguments.only.empty()) write_scenes_whole(session, writes);
  check_platform(session, backup, arguments);
  if (!backup.time.empty()) {
    session.note("restoring the state of board " + backup.board + " of " + local_text(backup.time));
  }
  write_all(session, std::move(writes),
            {.is_dry_run = arguments.is_dry_run,
             .remedy = ". Run the same command again to continue, or pqctl undo to take it back"});
}

}  // namespace

void add_restore(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax(
      add_command(
          grammar,
          {.name = "restore",
           .group = kKeep,
           .about = "Write a backup back to the board",
           .more =
               R"(Sends the differences, a section at a time: gamma, dci, acm, sharp and then always csc, because
only a write to csc applies the gains to the gamma tables; the AI scenes come last. If it is
interrupted it says how far it came; run the same command again to continue.
Also accepts documents as they are on the board: pq_config.json, aipq_config.json.

Examples:
  pqctl restore before-tuning.json --dry-run
  pqctl restore before-tuning.json
  pqctl restore before-tuning.json --only gamma,csc
  pqctl restore before-tuning.json --only csc/cscRGain
)"},
          [arguments](Session& session) { restore(session, *arguments); }))
      .word("file", {"FILE", "A backup; - is standard input"}, arguments->file, Need::kRequired)
      .list("--only", {"PLACE,...", "Only these sections, members or scenes"}, arguments->only)
      .flag("-n,--dry-run", "Print what would be sent, send nothing", arguments->is_dry_run)
      .flag("--force", "Ignore a wrong checksum, or another platform", arguments->is_forced);
}

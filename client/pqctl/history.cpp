#include "history.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <system_error>

#include "files.h"
#include "pqclient/error.h"
#include "time_text.h"
#include "user_folders.h"

namespace {

using pqclient::Error;
using pqclient::ErrorKind;
using pqclient::JsonPtr;

constexpr std::size_t kKeptEntries = 300;

std::string folder_name(const Board& board) {
  std::string name = board.name.empty() ? board.address.text() : board.name;
  std::ranges::replace(name, '/', '_');
  return name.starts_with('.') ? "_" + name : name;
}

// Without it, two pqctl running at once could take the same number.
class FolderLock {
 public:
  explicit FolderLock(const std::filesystem::path& folder)
      : descriptor_(open((folder / "lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600)) {
    if (descriptor_ < 0 || flock(descriptor_, LOCK_EX) != 0) throw file_error("lock", folder);
  }
  ~FolderLock() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  int descriptor_;
};

std::string text_in(const cJSON& object, const char* name) {
  const cJSON* item = pqclient::last_member(object, name);
  return cJSON_IsString(item) != 0 ? item->valuestring : "";
}

// Throws Error if it is not an entry.
HistoryEntry entry_of(const cJSON& object) {
  HistoryEntry entry;
  entry.time = text_in(object, "time");
  entry.command = text_in(object, "command");
  entry.is_undo = cJSON_IsTrue(pqclient::last_member(object, "undo")) != 0;
  entry.is_undone = cJSON_IsTrue(pqclient::last_member(object, "undone")) != 0;
  const cJSON* changes = pqclient::last_member(object, "changes");
  for (const cJSON* item = changes != nullptr ? changes->child : nullptr; item != nullptr;
       item = item->next) {
    const cJSON* before = pqclient::last_member(*item, "before");
    const cJSON* after = pqclient::last_member(*item, "after");
    if (before == nullptr || after == nullptr) throw Error(ErrorKind::kFile, "no values");
    entry.changes.push_back({pqclient::parse_target(text_in(*item, "place")),
                             pqclient::copy_json(*before), pqclient::copy_json(*after)});
  }
  return entry;
}

}  // namespace

JsonPtr json_of(const HistoryEntry& entry) {
  JsonPtr changes(cJSON_CreateArray());
  for (const HistoryChange& change : entry.changes) {
    JsonPtr item(cJSON_CreateObject());
    pqclient::add_member(*item, "place", pqclient::make_string(change.place.text()));
    pqclient::add_member(*item, "before", pqclient::copy_json(*change.before));
    pqclient::add_member(*item, "after", pqclient::copy_json(*change.after));
    pqclient::add_element(*changes, std::move(item));
  }
  JsonPtr object(cJSON_CreateObject());
  pqclient::add_member(*object, "time", pqclient::make_string(entry.time));
  pqclient::add_member(*object, "command", pqclient::make_string(entry.command));
  pqclient::add_member(*object, "undo", JsonPtr(cJSON_CreateBool(entry.is_undo)));
  pqclient::add_member(*object, "undone", JsonPtr(cJSON_CreateBool(entry.is_undone)));
  pqclient::add_member(*object, "changes", std::move(changes));
  return object;
}

History::History(const Board& board) {
  const std::filesystem::path state = state_folder();
  if (state.empty()) {
    throw Error(ErrorKind::kFile,
                "there is no folder for the history: neither XDG_STATE_HOME nor "
                "HOME is set to a folder");
  }
  folder_ = state / "history" / folder_name(board);
}

std::filesystem::path History::file_of(int number) const {
  const std::string digits = std::to_string(number);
  return folder_ / (std::string(digits.size() < 6 ? 6 - digits.size() : 0, '0') + digits + ".json");
}

std::vector<int> History::numbers() const {
  std::vector<int> numbers;
  std::error_code none;  // a missing folder has no entries
  for (const auto& file : std::filesystem::directory_iterator(folder_, none)) {
    const std::string name = file.path().stem().string();
    int number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (file.path().extension() == ".json" && error == std::errc() && *end == '\0' && number > 0) {
      numbers.push_back(number);
    }
  }
  std::ranges::sort(numbers);
  return numbers;
}

std::optional<HistoryEntry> History::read(int number) const {
  try {
    const JsonPtr object = pqclient::parse_whole_json(read_input(file_of(number)));
    if (cJSON_IsObject(object.get()) == 0) return std::nullopt;
    HistoryEntry entry = entry_of(*object);
    entry.number = number;
    return entry;
  } catch (const Error&) {
    return std::nullopt;
  }
}

void History::write(const HistoryEntry& entry) const {
  replace_file(file_of(entry.number), pqclient::print_json(*json_of(entry)) + "\n");
}

std::vector<HistoryEntry> History::entries() const {
  std::vector<HistoryEntry> entries;
  for (const int number : numbers()) {
    if (auto entry = read(number)) entries.push_back(std::move(*entry));
  }
  return entries;
}

std::filesystem::path History::unreadable_newest() const {
  const std::vector<int> known = numbers();
  return known.empty() || read(known.back()) ? std::filesystem::path() : file_of(known.back());
}

int History::add(HistoryEntry entry) const {
  std::error_code error;
  std::filesystem::create_directories(folder_, error);
  if (error) {
    throw Error(ErrorKind::kFile, "cannot make " + folder_.string() + ": " + error.message());
  }
  const FolderLock lock(folder_);
  const std::vector<int> known = numbers();
  entry.number = known.empty() ? 1 : known.back() + 1;
  entry.time = utc_text(std::chrono::system_clock::now());
  write(entry);
  for (std::size_t i = 0; i + kKeptEntries <= known.size(); ++i)
    std::filesystem::remove(file_of(known[i]), error);
  return entry.number;
}

void History::mark_undone(int number) const {
  auto entry = read(number);
  if (!entry) return;
  entry->is_undone = true;
  write(*entry);
}

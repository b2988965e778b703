#include "display_service/display_service.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "display_service/hardware_state.h"
#include "engine/model.h"
#include "screen/pipeline.h"
#include "screen/screenshot.h"
#include "screen/state_file.h"
#include "screen/test_picture.h"

namespace board::screen {
namespace {

constexpr std::string_view kWatchedPrefix = "vendor.tvinput.qxpq.";
constexpr char kTimeline[] = "vendor.tvinput.qxpq.timeline";
constexpr char kDumpInput[] = "vendor.tvinput.qxpq.dump.in";
constexpr char kDumpOutput[] = "vendor.tvinput.qxpq.dump.out";
constexpr char kDumpPath[] = "vendor.tvinput.qxpq.dump.path";
constexpr char kRedrawCounter[] = "redraw";
constexpr char kPattern[] = "pattern";

void log(const std::string& line) {
  (void)std::fprintf(stderr, "display_service: %s\n", line.c_str());
}

// The service lives on whatever goes wrong with one action.
void guarded(const std::string& what, const auto& action) {
  try {
    action();
  } catch (const std::exception& error) {
    log(what + " failed: " + error.what());
  }
}

}  // namespace

DisplayService::DisplayService(Description description, const std::filesystem::path& board_folder,
                               std::filesystem::path data_folder)
    : description_(std::move(description)),
      board_folder_(board_folder),
      data_folder_(std::move(data_folder)),
      properties_folder_(board_folder / "properties"),
      properties_(properties_folder_),
      test_picture_(draw_test_picture(screen_size(description_))) {
  watch_.add(properties_folder_);
  watch_.add(board_folder_ / "screen");
  watch_.add(board_folder_ / "drm");
  check_all_properties();
  redraw();
}

void DisplayService::serve(std::optional<std::chrono::milliseconds> timeout) {
  const auto dump_wait = until_first_dump();
  if (dump_wait && (!timeout || *dump_wait < *timeout)) timeout = dump_wait;
  for (const FolderWatch::Event& event : watch_.wait(timeout))
    act_on(event);
  take_due_dumps(Clock::now());
}

void DisplayService::act_on(const FolderWatch::Event& event) {
  if (event.name.empty()) {  // events were lost
    check_all_properties();
    redraw();
  } else if (event.folder == properties_folder_) {
    check_property(event.name);
  } else if (event.folder == board_folder_ / "drm") {
    follow_device();
  } else if (event.name == kRedrawCounter || event.name == kPattern) {
    // An application that comes or goes makes the compositor draw, as a request does.
    redraw();
    take_due_dumps(Clock::time_point::max());
  }
}

void DisplayService::check_all_properties() {
  for (const auto& file : std::filesystem::directory_iterator(properties_folder_)) {
    check_property(file.path().filename().string());
  }
}

void DisplayService::check_property(const std::string& name) {
  if (!name.starts_with(kWatchedPrefix)) return;
  std::string value = properties_.get(name).value_or("");
  std::string& known = told_[name];
  if (value == known) return;
  log(name + " changed from \"" + known + "\" to \"" + value + "\"");
  known = std::move(value);

  if (name == kTimeline) read_announced_parameters();
  const bool input = name == kDumpInput;
  if ((input || name == kDumpOutput) && known == "1") {
    guarded("taking the request", [&] { set_property(name, "0"); });
    known = "0";
    due_[input ? DumpSide::kInput : DumpSide::kOutput] = Clock::now() + kRedrawWait;
  }
}

void DisplayService::set_property(const std::string& name, const std::string& value) const {
  if (const int result = properties_.set(name, value); result != 0) {
    throw std::runtime_error(PropertyStore::refusal(name, value, result));
  }
}

void DisplayService::read_announced_parameters() {
  guarded("reading the PQ document",
          [&] { announced_ = engine::read_parameters(data_folder_ / "pq_config.json"); });
}

void DisplayService::redraw() {
  guarded("redrawing", [this] {
    ScreenState state = read_hardware_state(board_folder_);
    // Pattern mode switches DCI off in the document and announces it, without a new table from the
    // engine: the service itself takes the stage out of the picture then.
    if (state.lut && announced_ && !announced_->dci.enable) {
      state.lut = engine::compute_lut(*announced_);
    }
    show(std::move(state));
  });
}

void DisplayService::follow_device() {
  guarded("reading the display device", [this] {
    ScreenState state = on_screen_;
    update_device_settings(board_folder_, state);
    if (state.controls != on_screen_.controls || state.gamma != on_screen_.gamma) {
      show(std::move(state));
    }
  });
}

void DisplayService::show(ScreenState state) {
  write_state(state, state_file(board_folder_));
  on_screen_ = std::move(state);
}

void DisplayService::take_due_dumps(Clock::time_point now) {
  const auto is_due = [now](const auto& entry) { return entry.second <= now; };
  for (auto due = std::find_if(due_.begin(), due_.end(), is_due); due != due_.end();
       due = std::find_if(due_.begin(), due_.end(), is_due)) {
    const DumpSide side = due->first;
    due_.erase(due);
    guarded("dumping the picture", [&] { take_dump(side); });
  }
}

void DisplayService::take_dump(DumpSide side) {
  const Picture input =
      on_screen_.pattern ? draw_pattern(test_picture_.size, *on_screen_.pattern) : test_picture_;
  const std::filesystem::path file =
      write_dump(side == DumpSide::kInput ? input : Pipeline(on_screen_).apply(input), side,
                 description_, data_folder_);
  set_property(kDumpPath, file.string());
  told_[kDumpPath] = file.string();
  log("wrote " + file.string());
}

std::optional<std::chrono::milliseconds> DisplayService::until_first_dump() const {
  if (due_.empty()) return std::nullopt;
  const auto first = std::min_element(
      due_.begin(), due_.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(first->second - Clock::now());
  return std::max(left, std::chrono::milliseconds{0});
}

}  // namespace board::screen

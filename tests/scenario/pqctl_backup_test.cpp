// Backup and restore with pqctl, on a board that stores and shows the values.
#include <chrono>
#include <fstream>
#include <future>
#include <random>
#include <thread>

#include "drm/display_state.h"
#include "pqclient/target.h"
#include "scenario/pqctl_on_board.h"

namespace scenario {
namespace {

class Backup : public PqctlOnBoard {};

// A new value for some member of the section.
std::string random_assignment(const pqclient::Target& section, std::mt19937& random) {
  const auto below = [&](size_t n) { return static_cast<int>(random() % n); };
  pqclient::Target target = section;
  if (target.document == pqclient::Document::kAipq) target.scene = below(pqclient::kScenes.size());
  do {
    target.member = &section.section->members[random() % section.section->members.size()];
  } while (target.member->type == pqclient::MemberType::kText);
  if (target.member->is_table()) target.index = below(static_cast<size_t>(target.member->count));
  const auto range = static_cast<uint64_t>(target.member->max - target.member->min);
  const int64_t value = target.member->min + static_cast<int64_t>(random() % (range + 1));
  return target.text() + "=" + std::to_string(value) + " ";
}

TEST_F(Backup, BringsBothDocumentsBackAlsoAfterAnInterruption) {
  start_with_documents();
  const std::string before = stored();
  output_of("backup " + file("kept.json"));
  EXPECT_EQ(run("backup " + file("kept.json")).status, 7);  // never over another one

  std::mt19937 random(20261121);
  std::string changes = "ai/dci/nature-sky/dciEnable=0 ";  // the board moves it to the end
  const auto sections = pqclient::sections_in_writing_order();
  for (size_t i = 0; i < 10; ++i)
    changes += random_assignment(sections[i % sections.size()], random);
  output_of("set " + changes);
  EXPECT_NE(stored(), before) << changes;
  EXPECT_EQ(run("diff " + file("kept.json")).status, 8);

  // Interrupted as soon as something was written.
  const std::string changed = board().read(kPqDocument);
  auto first_write = std::async(std::launch::async, [&] {
    for (int i = 0; i < 4000 && board().read(kPqDocument) == changed; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    std::ofstream(file("written"));
  });
  const Outcome interrupted =
      run("restore " + file("kept.json") + " & while [ ! -e " + file("written") +
          " ]; do sleep 0.02; done; kill -INT $!; wait $!");
  first_write.get();
  EXPECT_EQ(interrupted.status, 130);
  EXPECT_NE(interrupted.errors.find("written: gamma"), std::string::npos) << interrupted.errors;
  EXPECT_NE(interrupted.errors.find("sharp, csc, ai/dci, ai/acm. Run the same command again"),
            std::string::npos);
  EXPECT_NE(stored(), before);

  output_of("restore " + file("kept.json"));
  EXPECT_EQ(stored(), before) << changes;
  EXPECT_EQ(run("diff " + file("kept.json")).status, 0);
}

// The board loads updated tables without the gains of csc.
TEST_F(Backup, ShowsNewGammaTablesWithTheGains) {
  start_with_documents();
  output_of("set csc/cscRGain 128");
  output_of("set gamma/gammaTab_R/512 30000");
  const auto display = board::read_display_state(board().file("/board"));
  EXPECT_EQ(display.connectors.at(0).gamma.red.at(512), 15000);
}

TEST_F(Backup, RestoresOnlyWhatIsSoundAndMeantForTheBoard) {
  start_with_documents();
  output_of("backup " + file("kept.json"));
  output_of("set csc/cscHue 1 csc/cscContrast 2");
  output_of("restore --only csc/cscHue " + file("kept.json"));
  EXPECT_EQ(run("get csc/cscContrast").output, "2\n");

  const std::string kept = text_of(file("kept.json"));
  const auto restore_with = [&](const std::string& text, const std::string& other) {
    std::string changed = kept;
    changed.replace(changed.find(text), text.size(), other);
    std::ofstream(file("changed.json")) << changed;
    return run("restore --dry-run " + file("changed.json")).status;
  };
  EXPECT_EQ(restore_with("\"platform\":\t1", "\"platform\":\t0"), 1);
  EXPECT_EQ(restore_with("\"cscEnable\":\t1", "\"cscEnable\":\t0"), 1);
  EXPECT_EQ(restore_with("{", "{"), 0);
  std::ofstream(file("scenes.json")) << R"({"dci":[1,[2],{},3,4,5,6,7,8,9,10,11]})";
  EXPECT_EQ(run("restore " + file("scenes.json")).status, 1);
}

}  // namespace
}  // namespace scenario

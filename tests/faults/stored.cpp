#include "faults/stored.h"

#include <filesystem>
#include <fstream>

#include "documents/aipq_document_creator.h"
#include "documents/document_file.h"
#include "documents/names.h"
#include "documents/pq_document_creator.h"
#include "json/tree.h"
#include "support/temporary_folder.h"

namespace faults {
namespace {

constexpr const char* kSideFiles[] = {"/data/vendor/qxalgo/.pq_config.json.saving",
                                      "/data/vendor/qxalgo/.aipq_config.json.saving"};

void put(const char* path, const std::string& text) {
  if (text.empty()) {
    std::filesystem::remove(path);
  } else if (text_of(path) != text) {
    write_file(path, text);
  }
}

// In the form in which the daemon writes documents, so that saving does not change it.
std::string formatted(const char* text) {
  const pq::JsonPtr tree = pq::parse_json(text);
  const pq::TextPtr printed(cJSON_Print(tree.get()));
  return printed.get();
}

}  // namespace

Stored small_documents() {
  return {formatted(R"({"pq_tuning_param":{
    "csc":{"name":"colour","cscEnable":1,"cscMode":"HIGH_QUALITY_MODE","cscBrightness":300,
           "cscHue":256,"cscContrast":256,"cscSaturation":256,"cscRGain":256,"cscGGain":256,
           "cscBGain":256},
    "dci":{"name":"contrast","dciEnable":1,"dciWgtCoef_low":[1,2]},
    "acm":{"name":"management","acmEnable":1,"acmTableDeltaYbyH":[-1,2],"lumGain":1023},
    "gamma":{"gammaEnable":1,"gammaTab_R":[1,2],"gammaTab_G":[3,4],"gammaTab_B":[5,6]},
    "sharp":{"sharpEnable":1,"sharpPeakingGain":256}}})"),
          formatted(R"({"dci":[{"name":"nature-default","dciEnable":1,"dciWgtCoef_low":[1,2]}],
                        "acm":[{"name":"nature-default","acmEnable":1,"lumGain":1023}]})")};
}

Stored whole_documents() {
  store({});
  getJsonFromBaseparameter(const_cast<char*>(pq::kPqDocument));
  createDefaultAIPQJson(const_cast<char*>(pq::kAipqDocument));
  return stored();
}

Stored stored() {
  return {text_of(pq::kPqDocument), text_of(pq::kAipqDocument)};
}

void store(const Stored& documents) {
  for (const char* file : kSideFiles)
    std::filesystem::remove(file);
  put(pq::kPqDocument, documents.pq);
  put(pq::kAipqDocument, documents.aipq);
}

bool settle_side_files() {
  const bool settled =
      pq::restore_document(pq::kPqDocument) && pq::restore_document(pq::kAipqDocument);
  return settled && !std::filesystem::exists(kSideFiles[0]) &&
         !std::filesystem::exists(kSideFiles[1]);
}

void write_file(const std::string& path, const std::string& content) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << content;
}

}  // namespace faults

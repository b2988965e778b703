#include "client/storing_board.h"

#include <cjson/cJSON_Utils.h>

#include <algorithm>
#include <utility>

using pqclient::Command;
using pqclient::CommandPacket;
using pqclient::DocumentCommand;

namespace {

std::string zeros(int n) {
  std::string text = "[0";
  for (int i = 1; i < n; ++i)
    text += ",0";
  return text + "]";
}

std::string pq_text() {
  std::string acm = R"("acm":{"name":"","acmEnable":1,"acmIsActive":1)";
  for (const auto& [side, count] : {std::pair{"H", 65}, {"Y", 585}, {"S", 845}}) {
    for (const char* what : {"Y", "H", "S"}) {
      acm += std::string(",\"acmTable") + (*side == 'H' ? "Delta" : "Gain") + what + "by" + side +
             "\":" + zeros(count);
    }
  }
  return R"({"csc":{"name":"","cscEnable":1,"cscMode":"LOW_LATENCY_MODE","cscBrightness":256,)"
         R"("cscHue":300,"cscContrast":256,"cscSaturation":256,"cscRGain":256,"cscGGain":256,)"
         R"("cscBGain":256},"dci":{"dciEnable":1},)" +
         acm + R"(,"lumGain":0,"hueGain":0,"satGain":0}})";
}

constexpr const char* kAipqText =
    R"({"dci":[{"name":"nature-default","dciEnable":1,"dciWeight_low":[1,2,3,4,5,6,7,8,9,1000]}]})";

}  // namespace

StoringBoard::StoringBoard()
    : pq_(pqclient::parse_json(pq_text())),
      aipq_(pqclient::parse_json(kAipqText)),
      board_([this](Visitor& visitor) { serve(visitor); }) {}

void StoringBoard::serve(Visitor& visitor) {
  for (bool is_fine = true; is_fine;) {
    const Request request = visitor.receive_request();
    switch (request.kind) {
      case Request::Kind::kClosed:
        return;
      case Request::Kind::kDocument:
        is_fine = handle_document(visitor, request);
        break;
      case Request::Kind::kCommand:
        locked()->story += 'c';
        is_fine = handle_command(visitor, request);
        break;
      case Request::Kind::kStray:
        locked()->story += 's';
        break;
    }
  }
}

bool StoringBoard::handle_document(Visitor& visitor, const Request& request) {
  const auto command = static_cast<DocumentCommand>(request.command);
  const bool is_aipq =
      command == DocumentCommand::kReadAipq || command == DocumentCommand::kWriteAipq;
  cJSON* document = is_aipq ? aipq_.get() : pq_.get();
  const pqclient::JsonPtr operations = pqclient::parse_json(request.text);
  if (command == DocumentCommand::kWritePq || command == DocumentCommand::kWriteAipq) {
    locked()->story += 'w';
    apply(document, operations.get());
    return true;
  }
  locked()->story += 'r';
  cJSON* operation = operations->child;
  const cJSON* path = pqclient::last_member(*operation, "path");
  const cJSON* section = pqclient::last_member(*document, path->valuestring + 1);
  if (section == nullptr) return false;
  pqclient::add_member(*operation, "value", pqclient::copy_json(*section));
  visitor.reply(pqclient::print_json(*operation));
  return true;
}

void StoringBoard::apply(cJSON* document, cJSON* operations) {
  const Locked record = locked();
  if (record->writes_to_ignore > 0) {
    --record->writes_to_ignore;
  } else if (cJSONUtils_ApplyPatches(document, operations) == 0) {
    ++record->writes;
  }
}

bool StoringBoard::handle_command(Visitor& visitor, const Request& request) {
  if (request.command == static_cast<std::uint16_t>(Command::kDump)) {
    if (request.text != "\x81") return false;
    visitor.send(pqclient::Bytes{2, 0, 1, 0, 6, 255, 0, 0, 0, 0, 255});
    return true;
  }
  if (request.command == static_cast<std::uint16_t>(Command::kPattern)) {
    locked()->pattern = request.text;
  } else {
    cJSON* dci = cJSON_GetObjectItem(cJSON_GetObjectItem(pq_.get(), "dci"), "dciEnable");
    const bool is_enter = request.text == "\x80";
    if (is_enter) saved_dci_ = dci->valueint;
    cJSON_SetNumberValue(dci, (is_enter ? 0 : saved_dci_));
  }
  CommandPacket packet{};
  std::ranges::copy(pqclient::kAcknowledgementMagic, packet.magic.begin());
  packet.command = static_cast<std::uint16_t>(request.command);
  packet.data_length = 1;
  packet.data[0] = 1;
  visitor.send(pqclient::bytes_of(packet));
  return true;
}

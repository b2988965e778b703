#include "pqclient/packets.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "pqclient/error.h"

namespace pqclient {
namespace {

TEST(Reply, LengthIsBelievedWithinBounds) {
  DocumentHeader header{.magic = kDocumentMagic, .command = 0, .reserved = {}, .data_length = 2};
  EXPECT_EQ(reply_bytes_after(header), 6U);
  for (const std::uint32_t wrong : {0U, 1U, kMaxReplyLength + 1, 0xFFFFFFFFU}) {
    header.data_length = wrong;
    EXPECT_THROW(reply_bytes_after(header), Error) << wrong;
  }
}

TEST(Acknowledgement, MustNameTheCommandAndSayOne) {
  CommandPacket packet{};
  std::ranges::copy(kAcknowledgementMagic, packet.magic.begin());
  packet.command = 4;
  packet.data[0] = 1;
  EXPECT_NO_THROW(check_acknowledgement(packet, Command::kPatternMode));
  EXPECT_THROW(check_acknowledgement(packet, Command::kPattern), Error);
  packet.data[0] = 0;
  EXPECT_THROW(check_acknowledgement(packet, Command::kPatternMode), Error);
  packet.data[0] = 1;
  std::ranges::copy(kCommandMagic, packet.magic.begin());  // an echo of the request
  EXPECT_THROW(check_acknowledgement(packet, Command::kPatternMode), Error);
}

}  // namespace
}  // namespace pqclient

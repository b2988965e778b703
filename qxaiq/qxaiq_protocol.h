// The tuning protocol: two families of packets on one TCP stream.
//
//   command packets    72 bytes, "QXISP-AK" first: dumps, test patterns, pattern mode. One that
//                      arrives in pieces is not put together.
//   document packets   0x51 0xAA 0xFF 0x58 first: JSON documents, which may take many receives.
//
// One packet a chunk: a chunk that holds more than one is not split.
#ifndef QXAIQ_QXAIQ_PROTOCOL_H_
#define QXAIQ_QXAIQ_PROTOCOL_H_

// The protocol's packets and what they call come with this header: tools and tests that drive the
// daemon's parts need no other.
#include "qxaiq/aipq_service.h"
#include "qxaiq/command_packet.h"
#include "qxaiq/document_packet.h"
#include "qxaiq/dump_capture.h"
#include "qxaiq/pq_query.h"
#include "qxaiq/pq_update.h"

// Thread rule: both handlers run on the receive thread of the client that sent the chunk, several
// at once; requests block that thread for as long as they take (seconds, for some).
class QXAiqProtocol {
 public:
  // Handles one chunk as a receive returned it: `length` bytes at `data`, which must point at 72
  // readable bytes at least, since a short command packet is read whole all the same.
  // Answers on `sock`. The result means nothing.
  static int HandlerTCPMessage(int sock, char* data, int length);

  // Handles a chunk that is no command packet. Returns 0.
  static int MessageForward(int sock, char* data, int length);

  // Notes that the process shuts down.
  static void Exit();
};

#endif  // QXAIQ_QXAIQ_PROTOCOL_H_

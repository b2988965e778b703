// Requests for a document, one per line after the first; a query starts with '?'.
#ifndef FUZZ_SUPPORT_REQUESTS_H_
#define FUZZ_SUPPORT_REQUESTS_H_

#include <cstddef>
#include <cstdint>

namespace fuzz {

// The picture-quality service's functions for one document.
struct Service {
  const char* document;
  int (*change)(char* body, uint32_t length);
  char* (*query)(char* body, uint32_t length);
};

// Runs an input's requests on a fresh board. Any request must leave sound documents and no open
// descriptor; a query changes nothing and any answer is JSON; a failed update changes nothing.
void run_requests(const uint8_t* data, size_t size, const Service& service);

}  // namespace fuzz

#endif  // FUZZ_SUPPORT_REQUESTS_H_

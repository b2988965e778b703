// One daemon for one pair of documents. Two would overwrite each other's changes, and clients would
// reach one or the other: the port can be shared.
#ifndef STARTUP_DOCUMENT_LOCK_H_
#define STARTUP_DOCUMENT_LOCK_H_

#include <optional>

#include "base/owner.h"

// Takes the lock of the documents' folder for as long as the result lives. Call before anything
// reads, restores or creates a document.
// Returns nothing, after an error line, when another daemon has it; an invalid descriptor, after an
// error line, when the folder can't be locked at all: the daemon serves without a lock then.
// May take a second: a program that a killed daemon was about to start can have its lock so long.
[[nodiscard]] std::optional<pq::UniqueFd> lock_documents();

#endif  // STARTUP_DOCUMENT_LOCK_H_

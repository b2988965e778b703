// The subject of the faults: a request of one kind, a connection, or a start of the daemon.
#ifndef TESTS_FAULTS_SUBJECT_H_
#define TESTS_FAULTS_SUBJECT_H_

#include <functional>
#include <string>
#include <vector>

#include "faults/stored.h"

namespace faults {

struct Subject {
  std::string name;

  // Sets up the board; null: with the first documents.
  std::function<void()> prepare;

  // The part that the faults strike. Returns the bytes that the client received.
  std::function<std::string()> run;

  // Checks that the daemon still works. Returns the problem, or an empty text.
  std::function<std::string()> serves_afterwards;

  // Stops background work before leftovers are counted.
  std::function<void()> finish = [] {};

  // The reply may differ but must have the same size: a short read fills a dump up with zeros.
  bool any_bytes = false;
};

// The requests that a client can send, passed to the handler as the server does.
std::vector<Subject> requests(const Stored& first);

// A client that connects to the real server, sends a request and leaves.
Subject connection(const Stored& first);

// Starts of the daemon: on a new board, on one that has its documents, and after an interrupted
// save.
std::vector<Subject> starts(const Stored& first);

}  // namespace faults

#endif  // TESTS_FAULTS_SUBJECT_H_

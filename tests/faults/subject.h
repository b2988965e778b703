// What a fault strikes: one request of a kind, a connection, or a start of the daemon.
#ifndef TESTS_FAULTS_SUBJECT_H_
#define TESTS_FAULTS_SUBJECT_H_

#include <functional>
#include <string>
#include <vector>

#include "faults/stored.h"

namespace faults {

struct Subject {
  std::string name;

  // The board as it is before; null: with the first documents.
  std::function<void()> prepare;

  // What the faults strike. Returns what a client got.
  std::function<std::string()> run;

  // Whether the daemon does its work afterwards; what is wrong, empty when nothing is.
  std::function<std::string()> serves_afterwards;

  // Ends what goes on, before what is left is counted.
  std::function<void()> finish = [] {};

  // The reply may be another one, of the same size: a short read fills a dump up with zeros.
  bool any_bytes = false;
};

// The requests that a client can send, handed to the handler as the server does.
std::vector<Subject> requests(const Stored& first);

// A client that connects, asks and goes, at the real server.
Subject connection(const Stored& first);

// Starts of the daemon: on a new board, on one that has its documents, and after a save that was
// cut short.
std::vector<Subject> starts(const Stored& first);

}  // namespace faults

#endif  // TESTS_FAULTS_SUBJECT_H_

/// \file
/// What a load has come to: the figures, what is promised of them, and how they are shown.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/load/account.h"

namespace dtsdb::load {

/// Memory and file at one moment.
struct Sample {
  double second = 0;  ///< since the first event was due
  double run_mb = 0;  ///< the topology task; these are megabytes of memory that a program has for itself
  double serve_mb = 0;
  double reader_mb = 0;  ///< the largest of the readers
  double writer_mb = 0;  ///< the largest of the writers
  double file_mb = 0;    ///< the store's file
};

/// Times from an event to its result, in milliseconds.
struct Latency {
  double median = 0;
  double most99 = 0;  ///< 99 % have at most that
  double worst = 0;
};

struct Figures {
  int stations = 0;
  int components = 0;
  double rate = 0;  ///< events a second, asked for
  double seconds = 0;
  int restarts = 0;  ///< of these, every other one by SIGKILL
  Account::Sums sums;
  std::int64_t committed = 0;  ///< events, by the writers
  Latency latency;             ///< of events that found a task
  Latency overStarts;          ///< of those that had to wait for the next one
  double slowestWrite_ms = 0;
  double slowestRow_ms = 0;
  double slowestTable_ms = 0;
  std::int64_t rowReads = 0;
  std::int64_t tableReads = 0;
  std::int64_t torn = 0;
  int viewers = 0;
  int viewersServed = 0;  ///< still connected at the end, with events until then
  std::int64_t viewerEvents = 0;
  double slowestPrune_ms = 0;
  int prunings = 0;
  std::vector<Sample> samples;  ///< one a second
  double warmUp_s = 0;          ///< until the logs have the length that pruning leaves them
  int differences = 0;          ///< of the last state from a full run
  int wrongStates = 0;          ///< components that aren't in the state of their last event
  bool goodStore = true;        ///< all its pages and rows can be read
  std::vector<std::string> faults;
};

/// One thing that is promised.
struct Promise {
  std::string text;
  bool isJudged = true;  ///< false when the load was too short for it
  bool holds = true;
};

/// What is promised, in the order in which it is shown.
std::vector<Promise> Promises(const Figures& figures);
/// True when all promises that were judged hold.
bool AllHold(const Figures& figures);

/// The figures for people, and as an object.
std::string FiguresAsText(const Figures& figures);
std::string FiguresAsJson(const Figures& figures);

}  // namespace dtsdb::load

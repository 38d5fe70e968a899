/// \file
/// A load: an installation at work, with writers, readers, viewers and a topology task that is ended again and again.
#pragma once

#include <string>

#include "tests/load/figures.h"

namespace dtsdb::load {

struct Options {
  std::string dtsdb;   ///< the command
  std::string folder;  ///< where the store and the messages of the programs are; it must exist
  double minutes = 60;
  int stations = 1000;
  double rate = 1000;  ///< events a second, of all writers together
  int writers = 4;
  int readers = 4;
  int viewers = 10;
  double restart_s = 60;  ///< the task is ended and started each so many seconds
  double prune_s = 10;    ///< the logs are pruned each so many seconds
  int keep_s = 70;        ///< and their rows of so many seconds left
  int interval_ms = 20;   ///< of the task's looks
  unsigned seed = 7;
  std::string lines;  ///< a file to which the lines of the task are added; none where it is empty
};

/// Runs a load to its end. Throws std::runtime_error when it can't be set up.
Figures RunLoad(const Options& options);

}  // namespace dtsdb::load

// The tests run side by side in one folder: none of them keeps a log there. log_test.cpp sees to the log.

#include "include/log_sink.h"

namespace {

[[maybe_unused]] const bool kNoLog = (dtsdb::SetLogSink([](dtsdb::LogKind, std::string_view) {}), true);

}  // namespace

/// \file
/// How the store's own parts report an error.
#pragma once

#include <string>

#include "rtdb/error_class.h"

namespace dtsdb::internal::rtdb {

/// Success, or an error with the message for the database's error handler. An error without one has been reported.
struct [[nodiscard]] Status {
  bool ok = true;
  dbErrors::dbErrorClass error = dbErrors::NoError;
  std::string text;

  explicit operator bool() const { return ok; }
  static Status Error(dbErrors::dbErrorClass error, std::string text) { return {false, error, std::move(text)}; }
  static Status AlreadyReported() { return {false, dbErrors::NoError, {}}; }
};

/// What an LMDB result means, in words.
std::string Reason(int result);

/// The error that an LMDB result stands for.
Status LmdbError(int result, const std::string& path, const char* operation);

}  // namespace dtsdb::internal::rtdb

/// \file
/// How the analysis layer reports what went wrong: as a value, never as an exception.
#pragma once

#include <string>
#include <tl/expected.hpp>

namespace dtsdb::analysis {

/// What kind of thing went wrong.
enum class ErrorCode {
  kUsage,             ///< the call asks for something that isn't there to ask for
  kFile,              ///< a file, folder or realtime database can't be read or written
  kFaultyModel,       ///< the validation found errors, or couldn't be finished
  kUnknownComponent,  ///< the model has no such component
  kNoTopology,        ///< the rules give no topology for this model
  kInternal,          ///< anything else, such as no memory
};

/// The code as a word that stays the same, such as "FAULTY_MODEL".
const char* CodeName(ErrorCode code);

/// Why a call has no result.
struct Error {
  ErrorCode code = ErrorCode::kInternal;  ///< for programs
  std::string message;                    ///< one line for people in UTF-8: what is wrong, where, and what to do
  std::string place;                      ///< the model, file or component that it is about; empty where there is none
};

/// A result, or the error in its place. Look first (`if (!result)`): `value()` of an error throws.
template <class T>
using Result = tl::expected<T, Error>;

}  // namespace dtsdb::analysis

/// \file
/// What can go wrong in a database.
#pragma once

/// Holds the classes of errors for dbDatabase, whose names they are to programs: dbDatabase::FileError.
struct dbErrors {
  /// The classes of errors.
  enum dbErrorClass {
    NoError,
    QueryError,
    ArithmeticError,
    IndexOutOfRangeError,
    DatabaseOpenError,
    FileError,
    OutOfMemoryError,
    Deadlock,
    NullReferenceError,
    LockRevoked,
    FileLimitExeeded,
    InconsistentInverseReference,
    DatabaseReadOnly,
    CursorError,
    ReadonlyCursor,
    TableNotFound,
    NotAttached
  };
};

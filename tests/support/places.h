/// \file
/// Where the things that a test reads or runs lie.
#pragma once

#include <string>
#include <vector>

namespace dtsdb::test {

/// A path of the source tree, for fixtures and golden files.
std::string SourcePath(const std::string& path);

/// A path among the public grid models; CMake builds the tests that read them only where there are any.
std::string DataPath(const std::string& path);

/// The program that the test runs beside itself: the PROGRAM of its dtsdb_test.
const char* TestProgram();

/// The names of the XIIDM files of the format's own project, in order.
std::vector<std::string> XiidmSamples();

}  // namespace dtsdb::test

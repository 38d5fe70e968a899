// The shared library opens "cbFlow.txt" when it is loaded, before the program makes a cbFlow.
#include <cstdio>
#include <filesystem>

#include "model/dtsdb.h"

int main() {
  const dtsdb::DTSDB loadsTheLibrary;
  const bool isThere = std::filesystem::exists("cbFlow.txt");
  std::printf("cbFlow.txt is %s\n", isThere ? "there" : "missing");
  return isThere ? 0 : 1;
}

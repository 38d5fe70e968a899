#include "tools/commands.h"

int main(int argc, char** argv) { return dtsdb::tools::RunCommand(argc, argv); }

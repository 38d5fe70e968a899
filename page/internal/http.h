/// \file
/// The library for HTTP, without what the system's headers that it needs define: one of them makes the name of our
/// record STATUS that of something else.
#pragma once

#include <httplib.h>

#undef STATUS

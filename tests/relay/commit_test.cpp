#include "relay/commit.h"

#include "breakerflow/cbflow.h"

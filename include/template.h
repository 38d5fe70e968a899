/// \file
/// The containers of the network model: tTable, the table that every kind of record lives in, tArray and Matrix.
#pragma once

#include "include/array.h"
#include "include/matrix.h"
#include "include/table.h"
#include "include/table_impl.h"

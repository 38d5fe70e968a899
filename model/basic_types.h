/// \file
/// The field types of the records, named by their width on disk.
#pragma once

#include <QtGlobal>

namespace dtsdb {

/// The numbers of the records, named by kind and bits.
using i8 = qint8;
using u8 = quint8;
using i32 = qint32;
using u32 = quint32;
using f32 = float;
using f64 = double;

static_assert(sizeof(f32) == 4 && sizeof(f64) == 8, "records hold IEEE 754 singles and doubles");

}  // namespace dtsdb

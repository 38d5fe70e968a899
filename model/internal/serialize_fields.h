/// \file
/// Records in an object file.
#pragma once

#include <span>

#include "model/field_info.h"
#include "model/qarchive.h"

namespace dtsdb::internal {

/// Stores or loads the fields of `record`, in order. A field that can't be loaded refuses the archive
/// (QArchive::Refuse) and keeps what it had.
void SerializeFields(void* record, std::span<const FieldInfo> fields, QArchive& ar);

}  // namespace dtsdb::internal

/// \file
/// Models by what a user calls them: object files and folders of text tables by their path, realtime databases as
/// rtdb:NAME.
#pragma once

#include <optional>
#include <string>

#include "model/dtsdb.h"

namespace dtsdb::tools {

enum class ModelForm { ObjectFile, TextTables, RealtimeDatabase };

/// The name of a form for people.
const char* FormName(ModelForm form);

/// The form of the model `path`: rtdb:NAME is a realtime database, a folder holds text tables, anything else is an
/// object file.
ModelForm FormOfModel(const std::string& path);

/// The form in which a model is to be written to `path` when the user names none: into a realtime database for
/// rtdb:NAME; text tables to a folder that exists, a name that ends in '/' and a name without extension; an object
/// file to any other.
ModelForm FormOfOutput(const std::string& path);

/// Reads a model. Throws Failure with one line that names what is wrong and where.
DTSDB LoadModel(const std::string& path);

/// Writes a model, in the form of FormOfOutput unless `form` asks for another, which it can't of a realtime database.
/// Throws Failure, and leaves what stood there, when that can't be done. A realtime database isn't replaced: its rows
/// are updated.
void SaveModel(DTSDB& database, const std::string& path, std::optional<ModelForm> form = std::nullopt);

}  // namespace dtsdb::tools

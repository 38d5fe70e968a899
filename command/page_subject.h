/// \file
/// What a page calls the model that a command was given.
#pragma once

#include "formats/model_name.h"
#include "page/documents.h"

namespace dtsdb::tools {

/// The name without its folders, and the form of the model: a page that is handed on shows nobody's paths.
page::Subject PageSubject(const ModelName& model, Language language);

}  // namespace dtsdb::tools

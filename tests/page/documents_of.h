/// \file
/// The documents on a network of a test.
#pragma once

#include <gtest/gtest.h>

#include "analysis/topology.h"
#include "page/documents.h"
#include "tests/support/model_builder.h"

namespace dtsdb::page::test {

/// Validates the network and, where it is good, works out its topology.
inline Documents DocumentsOf(dtsdb::test::ModelBuilder& network) {
  analysis::Model model = analysis::Model::Of(network.Db());
  const auto validation = model.Validate();
  EXPECT_TRUE(validation.has_value());
  if (validation->good) {
    const auto topology = analysis::WorkOutTopology(model);
    EXPECT_TRUE(topology.has_value());
  }
  return {model, *validation, {"two", "test", false}};
}

}  // namespace dtsdb::page::test

/// \file
/// What an import has made of a grid in an exchange format.
#pragma once

#include <string>
#include <vector>

namespace dtsdb::tools {

/// The account of an import. Texts are UTF-8.
struct ImportReport {
  /// A file that was read.
  struct File {
    std::string name;
    std::string contents;  ///< the short names of what it contains, such as "EQ"
    std::string version;
    std::string time;  ///< that the states are of, as the file has it
    int objects = 0;
  };
  /// A class of objects that was mapped.
  struct Class {
    std::string name;
    int count = 0;
    std::string tables;  ///< of the model, such as "CB"
  };
  /// Objects of one class that were left out, or mapped otherwise than objects of their class are.
  struct Exception {
    std::string type;  ///< the class
    int count = 0;
    std::vector<std::string> names;  ///< the first ones; of equipment with where it is defined
    std::string why;
  };
  /// A record and the object that it stands for.
  struct Identity {
    std::string table;
    std::string identity;
    std::string mrid;
    std::string name;
  };

  std::vector<File> files;
  std::vector<Class> classes;        ///< by name
  std::vector<Exception> leftOut;    ///< by class: equipment that the model lacks
  std::vector<Exception> changed;    ///< by class
  std::vector<Exception> unknown;    ///< by class: what no table has room for
  std::vector<Identity> identities;  ///< by table and identity
};

}  // namespace dtsdb::tools

#include "formats/xiidm/import.h"

#include <functional>
#include <optional>

#include "formats/failure.h"
#include "formats/files.h"
#include "formats/import/archive.h"
#include "formats/import/counted_file.h"
#include "formats/import/root_element.h"
#include "formats/xiidm/reader.h"
#include "formats/xiidm/steps.h"

namespace dtsdb::tools::xiidm {
namespace {

bool IsPacked(const QByteArray& beginning) { return beginning.startsWith("\x1F\x8B"); }

QString TagOf(const QByteArray& beginning) {
  return RootTag(std::string_view(beginning.constData(), static_cast<std::size_t>(beginning.size())));
}

/// The tag that opens the root element of a file, packed or not; empty for what can't be read.
QString TagOfFile(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return {};
  const QByteArray beginning = BeginningOf(file);
  if (!IsPacked(beginning)) return TagOf(beginning);
  QString tag;
  try {
    ReadPacked(file, [&tag](QIODevice& content) { tag = TagOf(content.peek(kBeginning)); });
  } catch (const Failure&) {
    return tag;
  }
  return tag;
}

Network ReadFile(const std::filesystem::path& path, const ReadingProgress& progress) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) RefuseFile(path, error ? error.message() : "there is no such file");
  if (!std::filesystem::is_regular_file(path, error)) RefuseFile(path, "is no file");  // a pipe would be waited for
  const std::uint64_t total = std::filesystem::file_size(path, error);
  std::uint64_t done = 0;
  const std::function<void(std::uint64_t)> count = [&](std::uint64_t bytes) {
    done += bytes;
    if (progress) progress(done, total);
  };
  if (IsPacked(BeginningOf(path))) {
    std::optional<Network> network;
    ReadPacked(
        path, [&](QIODevice& content) { network.emplace(ReadNetwork(content, path.string())); }, count);
    return std::move(*network);
  }
  CountedFile file(path, count);
  if (!file.open(QIODevice::ReadOnly)) RefuseFile(path, "can't be read: " + file.errorString().toStdString());
  return ReadNetwork(file, path.string());
}

}  // namespace

bool IsNetworkFile(const std::filesystem::path& file) { return IsNetworkTag(TagOfFile(file)); }

bool IsOfOtherProgram(const std::filesystem::path& file) {
  const QString tag = TagOfFile(file);
  return IsNetworkTag(tag) && !tag.contains(QLatin1String("sourceFormat=\"dtsdb\""));
}

ImportReport ImportNetwork(const Network& network, const ImportOptions& options, DTSDB& model) {
  Mapping mapping(network, options);
  MapContainers(mapping);
  MapSwitches(mapping);
  MapLines(mapping);
  MapTransformers(mapping);
  MapDevices(mapping, MapDcLines(mapping));
  mapping.rows.FillTables(model);
  return mapping.Report();
}

ImportReport Import(const std::filesystem::path& file, const ImportOptions& options, DTSDB& model,
                    const ReadingProgress& progress) {
  return ImportNetwork(ReadFile(file, progress), options, model);
}

}  // namespace dtsdb::tools::xiidm

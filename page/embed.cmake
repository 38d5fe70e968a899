# Writes OUTPUT, a source file with the bytes of the front end's files in FOLDER.
set(text "#include \"page/internal/asset_bytes.h\"\n\nnamespace dtsdb::page::internal {\n")
foreach(entry "IndexHtml index.html" "PageCss page.css" "PageJs page.js")
  separate_arguments(entry)
  list(GET entry 0 function)
  list(GET entry 1 file)
  file(READ ${FOLDER}/${file} bytes HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
  string(APPEND text "\nstd::span<const unsigned char> ${function}() {\n"
                     "  static constexpr unsigned char kBytes[] = {${bytes}};\n  return kBytes;\n}\n")
endforeach()
file(WRITE ${OUTPUT} "${text}\n}  // namespace dtsdb::page::internal\n")

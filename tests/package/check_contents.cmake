# Compares what stands in PREFIX with cmake/PublicHeaders.cmake of SOURCES, and this with docs/architecture.md.
include(${SOURCES}/cmake/PublicHeaders.cmake)

file(GLOB_RECURSE installed RELATIVE ${PREFIX} ${PREFIX}/*)
set(expected ${public_headers})
list(TRANSFORM expected PREPEND include/dtsdb/)

set(missing ${expected})
list(REMOVE_ITEM missing ${installed})
if(missing)
  list(JOIN missing "\n  " missing)
  message(SEND_ERROR "public headers that are not installed:\n  ${missing}")
endif()

# Beside the headers there are the library, its packages for CMake and pkg-config, the command with its manual, completions,
# unit and examples, and the package for Python.
set(others ${installed})
list(REMOVE_ITEM others ${expected})
list(FILTER others EXCLUDE REGEX "^lib/([^/]+/)?(libdtsdb(_analysis|_formats|_pictures|_script)?\\.(a|so[.0-9]*)|cmake/dtsdb/[A-Za-z-]+\\.cmake)$")
list(FILTER others EXCLUDE REGEX "^lib/([^/]+/)?pkgconfig/dtsdb(_analysis|_pictures)?\\.pc$")
list(REMOVE_ITEM others bin/dtsdb lib/systemd/system/dtsdb-run@.service lib/sysusers.d/dtsdb.conf)
list(FILTER others EXCLUDE REGEX "^share/(man/man1/dtsdb[a-z-]*\\.1|(bash-completion|fish|zsh)/[a-z_.-]+/_?dtsdb(\\.fish)?)$")
list(FILTER others EXCLUDE REGEX "^lib/python[0-9.]+/dist-packages/dtsdb/[a-z_]+\\.(py|pyi|typed|cpython[a-z0-9_-]+\\.so)$")
list(FILTER others EXCLUDE REGEX "^share/doc/dtsdb/examples/")
if(others)
  list(JOIN others "\n  " others)
  message(SEND_ERROR "installed, but not in cmake/PublicHeaders.cmake:\n  ${others}")
endif()

# The records and rows are described as a whole.
file(READ ${SOURCES}/docs/architecture.md page)
list(FILTER public_headers EXCLUDE REGEX "/(records|rows)/")
foreach(header ${public_headers})
  string(FIND "${page}" "`${header}`" place)
  if(place EQUAL -1)
    message(SEND_ERROR "docs/architecture.md doesn't name the public header ${header}")
  endif()
endforeach()

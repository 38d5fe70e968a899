# Decides whether the package for Python is built. It is not with an installed FastDB, and not under the sanitizers: these
# would have to be in the interpreter too.
if(DTSDB_SANITIZE OR DTSDB_RTDB STREQUAL "fastdb")
  set(DTSDB_BUILD_PYTHON OFF)
endif()
if(DTSDB_BUILD_PYTHON)
  # The interpreter that Debian's packages are for, unless another one is chosen with -DPython_EXECUTABLE=...
  if(NOT DEFINED Python_EXECUTABLE AND EXISTS /usr/bin/python3)
    set(Python_EXECUTABLE /usr/bin/python3)
  endif()
  set(PYBIND11_FINDPYTHON ON)
  find_package(Python 3.9 QUIET COMPONENTS Interpreter Development.Module)
  find_package(pybind11 2.10 QUIET CONFIG)
  if(NOT Python_FOUND OR NOT pybind11_FOUND)
    message(STATUS "No pybind11 or no headers of Python: the package for Python is left out")
    set(DTSDB_BUILD_PYTHON OFF)
  endif()
endif()

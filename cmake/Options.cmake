# The warnings, sanitizers and definitions that all of the project's own code is compiled with.
add_library(dtsdb_options INTERFACE)
target_compile_options(dtsdb_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                               -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(DTSDB_SANITIZE)
  target_compile_options(dtsdb_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                 -fno-omit-frame-pointer)
  target_link_options(dtsdb_options INTERFACE -fsanitize=address,undefined)
endif()
if(DTSDB_SANITIZE_THREADS)
  target_compile_options(dtsdb_options INTERFACE -fsanitize=thread)
  target_link_options(dtsdb_options INTERFACE -fsanitize=thread)
endif()

include(${CMAKE_CURRENT_LIST_DIR}/RealtimeDatabase.cmake)

# What makes a build quicker and changes no result: ccache, mold as the linker, precompiled headers, line numbers
# without the names of variables (-g1; give CMAKE_CXX_FLAGS=-g to follow variables in a debugger).
find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()
find_program(MOLD mold)
if(MOLD)
  target_link_options(dtsdb_options INTERFACE -fuse-ld=mold)
endif()
include(${CMAKE_CURRENT_LIST_DIR}/PrecompiledHeaders.cmake)

# Most of a file's compile time goes into what all files use: those of a folder are compiled as one, which takes half
# the time of each alone. Their names without a namespace must differ, therefore. Whoever changes one file again and
# again sets CMAKE_UNITY_BUILD=OFF, or CMAKE_UNITY_BUILD_BATCH_SIZE to the number of files that are compiled together.
if(NOT DEFINED CMAKE_UNITY_BUILD)
  set(CMAKE_UNITY_BUILD ON)
endif()
if(NOT DEFINED CMAKE_UNITY_BUILD_BATCH_SIZE)
  set(CMAKE_UNITY_BUILD_BATCH_SIZE 0)
endif()
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # It takes a file that another one includes for a header, whose classes have no parts without a name.
  target_compile_options(dtsdb_options INTERFACE -Wno-subobject-linkage)
endif()

# dtsdb_component(NAME SOURCES...): one folder of the library, compiled once for the shared and the static library and
# for the tests. Everything that includes its headers links dtsdb_NAME.
function(dtsdb_component name)
  add_library(dtsdb_${name} STATIC ${ARGN})
  target_include_directories(dtsdb_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  # Assigning a char const* to a QString would decode UTF-8 and ruin identity bytes.
  target_compile_definitions(dtsdb_${name} PRIVATE QT_NO_CAST_FROM_ASCII)
  target_link_libraries(dtsdb_${name} PUBLIC Qt6::Core PRIVATE dtsdb_options)
  target_precompile_headers(dtsdb_${name} REUSE_FROM dtsdb_headers)
  set_property(GLOBAL APPEND PROPERTY DTSDB_COMPONENTS dtsdb_${name})
endfunction()

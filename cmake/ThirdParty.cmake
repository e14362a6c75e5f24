# Third-party libraries. cmake/setup fetches their sources; configuring fetches nothing.
set(RAVLO_THIRD_PARTY ${CMAKE_SOURCE_DIR}/build/third_party CACHE PATH "Where cmake/setup puts the third-party sources")
foreach(file ${RAVLO_THIRD_PARTY}/sqlite3/sqlite3.c ${RAVLO_THIRD_PARTY}/libcsv/libcsv.c
             ${RAVLO_THIRD_PARTY}/taglib/taglib/fileref.cpp /usr/src/googletest/CMakeLists.txt /usr/include/CLI/CLI.hpp)
  if(NOT EXISTS ${file})
    message(FATAL_ERROR "${file} is missing: run cmake/setup first")
  endif()
endforeach()

# Sources of others: without our warnings and without instrumentation, optimised for size where they go into a package,
# and little where only tests use them.
set(optimised -O2)
if(RAVLO_SANITIZE)
  set(optimised -O1)
endif()
if(WIN32)
  set(optimised -Os -ffunction-sections)
endif()
function(ravlo_third_party target folder source)
  add_library(${target} STATIC ${RAVLO_THIRD_PARTY}/${folder}/${source})
  target_include_directories(${target} SYSTEM PUBLIC ${RAVLO_THIRD_PARTY}/${folder})
  target_compile_options(${target} PRIVATE ${optimised} -g0 -w)
  if(RAVLO_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
  endif()
  set_target_properties(${target} PROPERTIES EXPORT_COMPILE_COMMANDS OFF)
endfunction()

ravlo_third_party(sqlite3_amalgamation sqlite3 sqlite3.c)
target_compile_definitions(sqlite3_amalgamation PRIVATE
  SQLITE_THREADSAFE=1 SQLITE_DQS=0 SQLITE_OMIT_LOAD_EXTENSION SQLITE_OMIT_DEPRECATED SQLITE_OMIT_SHARED_CACHE
  SQLITE_OMIT_JSON SQLITE_OMIT_TRACE SQLITE_OMIT_PROGRESS_CALLBACK SQLITE_OMIT_GET_TABLE SQLITE_OMIT_COMPLETE SQLITE_OMIT_DECLTYPE
  SQLITE_DEFAULT_FOREIGN_KEYS=1 SQLITE_LIKE_DOESNT_MATCH_BLOBS)
ravlo_third_party(libcsv libcsv libcsv.c)

# TagLib, for reading only: without zlib, so compressed frames of an ID3 tag are left out. Small rather than quick: the
# disk decides how long reading takes.
set(folders . ape asf flac it mod mp4 mpc mpeg mpeg/id3v1 mpeg/id3v2 mpeg/id3v2/frames ogg ogg/flac ogg/opus ogg/speex
  ogg/vorbis riff riff/aiff riff/wav s3m toolkit trueaudio wavpack xm)
set(sources)
set(includes ${CMAKE_BINARY_DIR}/include/taglib)
foreach(folder ${folders})
  file(GLOB found ${RAVLO_THIRD_PARTY}/taglib/taglib/${folder}/*.cpp)
  list(APPEND sources ${found})
  list(APPEND includes ${RAVLO_THIRD_PARTY}/taglib/taglib/${folder})
  string(REGEX REPLACE "^(mpeg/id3v2)/.*" "\\1" group ${folder}) # larger groups have names that clash
  set_source_files_properties(${found} PROPERTIES UNITY_GROUP taglib/${group})
endforeach()
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/include/taglib/taglib_config.h
  CONTENT "#define TAGLIB_WITH_ASF 1\n#define TAGLIB_WITH_MP4 1\n")
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/include/taglib/config.h
  CONTENT "#define HAVE_GCC_ATOMIC 1\n#define HAVE_GCC_BYTESWAP 1\n#define HAVE_VSNPRINTF 1\n")
# Their names collide with those of other sources of their folders.
set_source_files_properties(${RAVLO_THIRD_PARTY}/taglib/taglib/mpeg/mpegheader.cpp
  ${RAVLO_THIRD_PARTY}/taglib/taglib/ape/apetag.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
add_library(taglib STATIC ${sources})
# Its classes can print themselves, which would link the standard streams with all of their locales into each program: its
# headers see a stream that drops everything, and no <iostream>.
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/include/taglib/NoStreams.h CONTENT [[
#pragma once
#include <bitset>
#include <istream>
#include <list>
#include <map>
#include <string>
#include <vector>
namespace std
{
struct NoStream
{
    template <class Any> NoStream& operator<<(const Any&) { return *this; }
};
}
#define ostream NoStream
#define cerr NoStream()
]])
set(RAVLO_TAGLIB_INCLUDES ${includes})
set(RAVLO_TAGLIB_OPTIONS -include ${CMAKE_BINARY_DIR}/include/taglib/NoStreams.h -D_GLIBCXX_IOSTREAM)
target_include_directories(taglib PRIVATE ${includes} ${RAVLO_THIRD_PARTY}/taglib/3rdparty)
target_compile_definitions(taglib PRIVATE TAGLIB_STATIC HAVE_CONFIG_H NDEBUG)
target_compile_options(taglib PRIVATE $<IF:$<BOOL:${RAVLO_SANITIZE}>,-O0,-Os> -g0 -w -ffunction-sections -fdata-sections
  ${RAVLO_TAGLIB_OPTIONS})
if(RAVLO_SANITIZE)
  target_compile_options(taglib PRIVATE -fno-sanitize=all)
endif()
set_target_properties(taglib PROPERTIES EXPORT_COMPILE_COMMANDS OFF UNITY_BUILD ${RAVLO_UNITY} UNITY_BUILD_MODE GROUP)

# CLI11 has only headers. A link tree of its own hides the rest of /usr/include from the cross compilers; cli11.h in it
# keeps the standard streams out.
add_library(cli11 INTERFACE)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/include/cli11)
file(CREATE_LINK /usr/include/CLI ${CMAKE_BINARY_DIR}/include/cli11/CLI SYMBOLIC)
file(CREATE_LINK ${CMAKE_SOURCE_DIR}/cmake/cli11.h ${CMAKE_BINARY_DIR}/include/cli11/cli11.h SYMBOLIC)
target_include_directories(cli11 SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/include/cli11)

# GoogleTest is built from source with the compiler in use, as its authors recommend.
if(BUILD_TESTING)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  target_compile_options(gtest PRIVATE -O0)
  if(RAVLO_SANITIZE)
    target_compile_options(gtest PRIVATE -fno-sanitize=all)
  endif()
endif()

# Google Benchmark, native builds only: target benchmark::benchmark.
if(NOT WIN32)
  find_package(benchmark REQUIRED)
endif()

# One target per folder, with its allowed dependencies.
#
#   ravlo_layer(<target> FOLDER <folder> DEPENDS <target>... [LIBRARIES <library>...] [FAST] [WINDOWS_ONLY])
#
# A layer sees the headers of its own folder and of the layers it names, and no others: every target exposes its
# headers through links in an include tree of its own, never the top of the source tree and no folder below its own.
# Including a header of a layer that is not named is therefore a compile error.
#
# Releases for Windows are optimised for size, which halves their code; FAST layers, where the time of a pick and of
# changes of many cuts goes, for speed.
set(RAVLO_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  list(APPEND RAVLO_WARNINGS -Wno-sign-conversion) # which -Wconversion does not include elsewhere
endif()

# Sources of a large target are compiled several at a time, which halves the time: most of it goes into their common
# headers. So a name in an anonymous namespace is taken once per layer. Whether each source includes what it needs shows
# without RAVLO_UNITY.
function(ravlo_compile_together target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${RAVLO_UNITY} UNITY_BUILD_BATCH_SIZE 10)
endfunction()

function(ravlo_layer target)
  cmake_parse_arguments(A "FAST;WINDOWS_ONLY" "FOLDER" "DEPENDS;LIBRARIES" ${ARGN})
  if(A_WINDOWS_ONLY AND NOT WIN32)
    return()
  endif()
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${A_FOLDER}/*.cpp)
  set(include_tree ${CMAKE_BINARY_DIR}/include/${target})
  file(REMOVE_RECURSE ${include_tree})
  file(MAKE_DIRECTORY ${include_tree}/${A_FOLDER})
  file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/${A_FOLDER}/*.h
    ${CMAKE_SOURCE_DIR}/${A_FOLDER}/*.inc)
  foreach(header IN LISTS headers)
    file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${header} ${include_tree}/${header} SYMBOLIC)
  endforeach()
  if(sources)
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC ${include_tree})
    target_link_libraries(${target} PUBLIC ${A_DEPENDS} ${A_LIBRARIES})
    target_compile_options(${target} PRIVATE ${RAVLO_WARNINGS})
    if(WIN32 AND A_FAST)
      target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O2>)
    endif()
    ravlo_compile_together(${target})
    set(archive ${target})
  else()
    set(archive)
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE ${include_tree})
    target_link_libraries(${target} INTERFACE ${A_DEPENDS} ${A_LIBRARIES})
  endif()
  ravlo_archives_of(below ${A_DEPENDS})
  set_property(GLOBAL PROPERTY RAVLO_ARCHIVES_${target} ${archive} ${below})
endfunction()

# Sets `result` to the layers with sources among these and all below them.
function(ravlo_archives_of result)
  set(all)
  foreach(layer IN LISTS ARGN)
    get_property(archives GLOBAL PROPERTY RAVLO_ARCHIVES_${layer})
    list(APPEND all ${archives})
  endforeach()
  list(REMOVE_DUPLICATES all)
  set(${result} ${all} PARENT_SCOPE)
endfunction()

# ravlo_test(<name> FOLDER <folder under tests/> DEPENDS <target>...): one test program from all *.cpp of the folder.
# CTest runs it once per source file, with the suites of that file: a process per test would cost more than the tests,
# most of all under Wine. A suite in two files runs with the first.
function(ravlo_test name)
  cmake_parse_arguments(A "" "FOLDER" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${A_FOLDER}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${A_DEPENDS} gtest_main)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  # Building is most of the tests' time, and a test's own code need not be quick: -O0 builds in a third of the time.
  target_compile_options(${name} PRIVATE ${RAVLO_WARNINGS} -O0)
  if(NOT WIN32)
    # Of equal inline functions the linker takes the first: the layers' optimised ones, not those of the tests, which
    # nearly halves the time of the long tests.
    ravlo_archives_of(archives ${A_DEPENDS})
    list(TRANSFORM archives REPLACE "(.+)" "$<TARGET_FILE:\\1>")
    target_link_options(${name} PRIVATE LINKER:--whole-archive ${archives} LINKER:--no-whole-archive)
  endif()
  ravlo_compile_together(${name})
  if(WIN32) # GNU's linker takes half a minute for the largest
    target_link_options(${name} PRIVATE -wrapper ${CMAKE_SOURCE_DIR}/cmake/lld-wrapper)
  endif()
  if(RAVLO_UNITY)
    # The sources among each other do no harm.
    target_compile_options(${name} PRIVATE -Wno-shadow $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  endif()
  set(taken)
  foreach(source IN LISTS sources)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
    file(STRINGS ${source} lines REGEX "^(TEST|TEST_F|TEST_P|TYPED_TEST)\\(")
    set(filter)
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^[A-Z_]+\\(([A-Za-z0-9_]+).*" "\\1" suite "${line}")
      if(NOT suite IN_LIST taken)
        list(APPEND taken ${suite})
        list(APPEND filter "${suite}.*" "${suite}/*.*" "*/${suite}.*") # plain, typed, with parameters
      endif()
    endforeach()
    if(filter)
      list(JOIN filter ":" filter)
      cmake_path(GET source STEM stem)
      add_test(NAME ${name}.${stem} COMMAND ${name} --gtest_filter=${filter})
      # The first program under Wine may wait until its prefix is created. wine-run skips what this Wine cannot run.
      set_tests_properties(${name}.${stem} PROPERTIES LABELS ${A_FOLDER} TIMEOUT 900 SKIP_RETURN_CODE 77
        ENVIRONMENT WINE_RUN_TIMEOUT=840)
    endif()
  endforeach()
endfunction()

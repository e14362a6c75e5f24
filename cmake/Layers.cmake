# One target per folder, with its allowed dependencies written down.
#
#   ravlo_layer(<target> FOLDER <folder> DEPENDS <target>... [LIBRARIES <library>...] [WINDOWS_ONLY])
#
# A layer sees the headers of its own folder and of the layers it names, and no others: every target exposes its
# folder through a link in an include tree of its own, never the top of the source tree. Including a header of a
# layer that is not named is therefore a compile error.
set(RAVLO_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

function(ravlo_layer target)
  cmake_parse_arguments(A "WINDOWS_ONLY" "FOLDER" "DEPENDS;LIBRARIES" ${ARGN})
  if(A_WINDOWS_ONLY AND NOT WIN32)
    return()
  endif()
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${A_FOLDER}/*.cpp)
  set(include_tree ${CMAKE_BINARY_DIR}/include/${target})
  get_filename_component(parent ${include_tree}/${A_FOLDER} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${A_FOLDER} ${include_tree}/${A_FOLDER} SYMBOLIC)
  if(sources)
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC ${include_tree})
    target_link_libraries(${target} PUBLIC ${A_DEPENDS} ${A_LIBRARIES})
    target_compile_options(${target} PRIVATE ${RAVLO_WARNINGS})
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE ${include_tree})
    target_link_libraries(${target} INTERFACE ${A_DEPENDS} ${A_LIBRARIES})
  endif()
endfunction()

# ravlo_test(<name> FOLDER <folder under tests/> DEPENDS <target>...): one test program from all *.cpp of the folder.
function(ravlo_test name)
  cmake_parse_arguments(A "" "FOLDER" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${A_FOLDER}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${A_DEPENDS} gtest_main gmock)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  # A test's own code need not be quick, and building it is most of what the tests take: a third of the time this way.
  target_compile_options(${name} PRIVATE ${RAVLO_WARNINGS} -O0)
  # The first program under Wine may wait for its prefix to be made.
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 600 PROPERTIES LABELS ${A_FOLDER} TIMEOUT 300)
endfunction()

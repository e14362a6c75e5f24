# Type libraries: comkit/<name>.idl gives <name>.idl, with the version of the product, and <name>.tlb, <name>.h and
# <name>_i.c in the build folder, and the target typelibs, which has the headers (as system headers: the generated code
# does not pass our warnings) and the GUIDs.
find_program(PYTHON3 python3 REQUIRED NO_CMAKE_FIND_ROOT_PATH)
find_program(WIDL NAMES ${triple}-widl REQUIRED)
# stdole2.tlb is part of Wine; widl reads the 64-bit one for both architectures.
find_path(STDOLE_DIR stdole2.tlb PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows
  NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(RAVLO_TYPELIB_DIR ${CMAKE_BINARY_DIR}/typelibs CACHE INTERNAL "Where the compiled type libraries go")
file(MAKE_DIRECTORY ${RAVLO_TYPELIB_DIR})
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
  set(widl_arch --win32)
else()
  set(widl_arch --win64)
endif()

# ravlo_typelib(<name> [DEPENDS <library it imports>...])
function(ravlo_typelib name)
  cmake_parse_arguments(A "" "" "DEPENDS" ${ARGN})
  set(idl ${RAVLO_TYPELIB_DIR}/${name}.idl)
  configure_file(${CMAKE_SOURCE_DIR}/comkit/${name}.idl ${idl} @ONLY)
  set(base ${RAVLO_TYPELIB_DIR}/${name})
  set(widl ${WIDL} ${widl_arch} -I ${CMAKE_SOURCE_DIR}/comkit/idl -I ${RAVLO_TYPELIB_DIR} -L ${STDOLE_DIR} -L ${RAVLO_TYPELIB_DIR})
  set(imports ${A_DEPENDS})
  list(TRANSFORM imports REPLACE "(.+)" "${RAVLO_TYPELIB_DIR}/\\1.tlb")
  add_custom_command(OUTPUT ${base}.tlb ${base}.h ${base}_i.c
    COMMAND ${widl} -t -o ${base}.tlb ${idl}
    COMMAND ${PYTHON3} ${CMAKE_SOURCE_DIR}/comkit/without-time.py ${base}.tlb
    COMMAND ${widl} -h -o ${base}.h ${name}.idl # the headers say which file they are made from
    COMMAND ${widl} -u -o ${base}_i.c ${name}.idl
    DEPENDS ${idl} ${CMAKE_SOURCE_DIR}/comkit/idl/oaidl.idl ${CMAKE_SOURCE_DIR}/comkit/without-time.py ${imports}
    WORKING_DIRECTORY ${RAVLO_TYPELIB_DIR} COMMENT "Type library ${name}" VERBATIM)
endfunction()
ravlo_typelib(KorvaCollection)
ravlo_typelib(RavloBase DEPENDS KorvaCollection)
ravlo_typelib(RavloScheduler DEPENDS KorvaCollection RavloBase)

set(outputs)
foreach(name KorvaCollection RavloBase RavloScheduler)
  list(APPEND outputs ${RAVLO_TYPELIB_DIR}/${name}.tlb ${RAVLO_TYPELIB_DIR}/${name}.h)
endforeach()
add_library(typelibs STATIC
  ${RAVLO_TYPELIB_DIR}/KorvaCollection_i.c ${RAVLO_TYPELIB_DIR}/RavloBase_i.c ${RAVLO_TYPELIB_DIR}/RavloScheduler_i.c)
add_custom_target(typelib_files DEPENDS ${outputs})
add_dependencies(typelibs typelib_files)
target_include_directories(typelibs SYSTEM PUBLIC ${RAVLO_TYPELIB_DIR})

# What the headers of all Windows binaries say, and what keeps two builds of one tree the same byte for byte.
#
# 6.1 is Windows 7, the oldest system they run on: without it Windows assumes one older than any it still emulates.
# The compiler leaves its own paths out of the debug information; the linker leaves out the time.
add_compile_options("$<$<CONFIG:Release>:-ffile-prefix-map=${CMAKE_BINARY_DIR}=build;-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.>")
add_link_options(-Wl,--no-insert-timestamp
  -Wl,--major-os-version,6,--minor-os-version,1,--major-subsystem-version,6,--minor-subsystem-version,1)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
  add_link_options(-Wl,--large-address-aware) # 4 GB of addresses instead of 2 on a 64-bit Windows
endif()

# A release contains only what it uses.
add_compile_options($<$<CONFIG:Release>:-ffunction-sections> $<$<CONFIG:Release>:-fdata-sections>)
add_link_options($<$<CONFIG:Release>:-Wl,--gc-sections>)

# What a host's manifest names stays valid in every 1.y: the assemblies of RavloSched and RavloBase have this version.
set(RAVLO_ASSEMBLY_VERSION ${PROJECT_VERSION_MAJOR}.0.0.0)

# ravlo_product(<target> <description>): a binary that ships. Its file properties show the version; in a release it is
# stripped, and its debug information is in <file>.debug next to it, where debuggers find it.
function(ravlo_product NAME DESCRIPTION)
  set(FILE ${NAME}.exe)
  set(TYPE VFT_APP)
  get_target_property(kind ${NAME} TYPE)
  if(kind STREQUAL "SHARED_LIBRARY")
    set(FILE ${NAME}.dll)
    set(TYPE VFT_DLL)
    set(MORE "      VALUE \"OLESelfRegister\", \"\"\n")
  endif()
  configure_file(${CMAKE_SOURCE_DIR}/cmake/Version.rc.in ${NAME}.version.rc @ONLY)
  target_sources(${NAME} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${NAME}.version.rc ${CMAKE_SOURCE_DIR}/comkit/Terminate.cpp)
  if(CMAKE_BUILD_TYPE STREQUAL "Release")
    set(file $<TARGET_FILE:${NAME}>)
    set(without_time ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0) # these tools write the time into the header, too
    add_custom_command(TARGET ${NAME} POST_BUILD VERBATIM
      COMMAND ${without_time} ${CMAKE_OBJCOPY} --only-keep-debug ${file} ${file}.debug
      COMMAND ${without_time} ${CMAKE_STRIP} ${file}
      COMMAND ${without_time} ${CMAKE_OBJCOPY} --add-gnu-debuglink=${file}.debug ${file})
  endif()
endfunction()

# telvarra_add_simulator(<target> OUTPUT_NAME <vendor base name> [WINDOWS_NAME <base name>]
#                        SOURCES <file>... EXPORT_PREFIXES <prefix>...)
#
# Builds a simulator as the vendor's shared library: <name>.dll on Windows, lib<name>.so on
# Linux (WINDOWS_NAME, when the vendor spells the two differently, names the DLL), exporting
# only the names that start with one of the prefixes (the vendor's functions and the
# simulator's test control). Programs that link it reach its control header, and
# sim/common, from the top folder.
function(telvarra_add_simulator target)
  cmake_parse_arguments(PARSE_ARGV 1 SIM "" "OUTPUT_NAME;WINDOWS_NAME" "SOURCES;EXPORT_PREFIXES")
  if(NOT SIM_OUTPUT_NAME OR NOT SIM_SOURCES OR NOT SIM_EXPORT_PREFIXES)
    message(FATAL_ERROR "telvarra_add_simulator(${target}): OUTPUT_NAME, SOURCES and "
                        "EXPORT_PREFIXES are all needed")
  endif()
  add_library(${target} SHARED ${SIM_SOURCES})
  target_link_libraries(${target} PRIVATE telvarra_sim_common)
  target_compile_definitions(${target} PRIVATE TELVARRA_SIM_BUILDING)
  target_include_directories(${target} INTERFACE ${PROJECT_SOURCE_DIR})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${SIM_OUTPUT_NAME})
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "")
    if(SIM_WINDOWS_NAME)
      set_target_properties(${target} PROPERTIES OUTPUT_NAME ${SIM_WINDOWS_NAME})
    endif()
  else()
    # Without a version script the C++ runtime's template instances would be exported too.
    set(patterns "")
    foreach(prefix IN LISTS SIM_EXPORT_PREFIXES)
      string(APPEND patterns " ${prefix}*;")
    endforeach()
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
    file(CONFIGURE OUTPUT ${script} CONTENT "{\n  global:${patterns}\n  local: *;\n};\n")
    # Stays mapped after dlclose, like a resident vendor runtime: its never-destroyed state must
    # stay reachable for hosts that shut drivers down from their exit handlers.
    target_link_options(${target} PRIVATE "LINKER:--version-script=${script}"
                                          "LINKER:-z,nodelete")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
  endif()
endfunction()

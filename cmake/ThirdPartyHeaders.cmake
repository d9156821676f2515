# CLI11 and stb: header-only Debian packages (libcli11-dev, libstb-dev) for the command-line
# program and the simulators. Their headers are copied into a build-local folder, because the
# cross compiler must not see the rest of /usr/include.
set(TELVARRA_THIRD_PARTY_INCLUDE ${CMAKE_BINARY_DIR}/third-party/include)
find_path(TELVARRA_CLI11_ROOT CLI/CLI.hpp PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
find_path(TELVARRA_STB_ROOT stb_image_write.h PATHS /usr/include/stb NO_DEFAULT_PATH
          NO_CMAKE_FIND_ROOT_PATH)
if(NOT TELVARRA_CLI11_ROOT OR NOT TELVARRA_STB_ROOT)
  message(FATAL_ERROR "CLI11 and stb headers not found: apt-get install libcli11-dev libstb-dev")
endif()
file(COPY ${TELVARRA_CLI11_ROOT}/CLI DESTINATION ${TELVARRA_THIRD_PARTY_INCLUDE})
foreach(header stb_image_write.h stb_image.h)
  configure_file(${TELVARRA_STB_ROOT}/${header} ${TELVARRA_THIRD_PARTY_INCLUDE}/stb/${header}
                 COPYONLY)
endforeach()
# SYSTEM: their own warnings are not ours to fix.
add_library(telvarra_third_party_headers INTERFACE)
target_include_directories(telvarra_third_party_headers SYSTEM INTERFACE
                           ${TELVARRA_THIRD_PARTY_INCLUDE})

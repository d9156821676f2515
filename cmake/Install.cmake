# What `cmake --install` lays out: the headers, the library, a CMake package giving the imported
# target Telvarra::Telvarra, the telvarra program, and on Linux a pkg-config file.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set_target_properties(Telvarra_X64 PROPERTIES EXPORT_NAME Telvarra)
target_include_directories(Telvarra_X64 PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
install(TARGETS Telvarra_X64 telvarra EXPORT TelvarraTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/telvarra DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Telvarra)
install(EXPORT TelvarraTargets NAMESPACE Telvarra:: DESTINATION ${package_dir})
configure_package_config_file(cmake/TelvarraConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/TelvarraConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/TelvarraConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/TelvarraConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/TelvarraConfigVersion.cmake
        DESTINATION ${package_dir})

if(NOT WIN32)
  # The installed program finds the installed library beside it, wherever the prefix is.
  set_target_properties(telvarra PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  # Relocatable: the prefix is found from the file's own place, so an install with
  # `cmake --install --prefix DIR` anywhere stays right.
  string(REGEX REPLACE "[^/]+" ".." TELVARRA_PC_UP "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
  configure_file(cmake/telvarra.pc.in ${CMAKE_CURRENT_BINARY_DIR}/telvarra.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/telvarra.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()

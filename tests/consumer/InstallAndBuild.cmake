# Installs the build into a prefix of its own, builds the consumer against that prefix alone, and
# runs it (under the emulator when cross-compiling).
set(prefix ${WORK_DIR}/prefix)
set(build ${WORK_DIR}/build)
file(REMOVE_RECURSE ${WORK_DIR})

include(${CMAKE_CURRENT_LIST_DIR}/../support/RunChecked.cmake)

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
set(configure -S ${SOURCE_DIR} -B ${build} -G ${GENERATOR} -DCMAKE_PREFIX_PATH=${prefix})
if(TOOLCHAIN_FILE)
  # A cross toolchain looks for packages in its own root only: name the package's folder.
  list(APPEND configure -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN_FILE}
                        -DTelvarra_DIR=${prefix}/lib/cmake/Telvarra)
endif()
if(SANITIZE)
  # A sanitized library needs its runtime in the program.
  list(APPEND configure "-DCMAKE_C_FLAGS=-fsanitize=address,undefined")
endif()
set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
run(${CMAKE_COMMAND} ${configure})
run(${CMAKE_COMMAND} --build ${build})

if(EMULATOR)
  # The installed DLL is found through Wine's search path.
  string(REPLACE "/" "\\" wine_path "Z:${prefix}/bin")
  set(ENV{WINEPATH} "${wine_path}")
  set(ENV{WINEDEBUG} "-all")
  run(${EMULATOR} ${build}/consumer.exe ${VERSION})
else()
  run(${build}/consumer ${VERSION})
  run(${build}/consumer_pkgconfig ${VERSION})
endif()

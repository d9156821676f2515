# Configures and builds the host programs on their own, then runs each (under the emulator when
# cross-compiling) against the built library.
file(REMOVE_RECURSE ${HOST_BINARY_DIR})
set(configure_args -S ${HOST_SOURCE_DIR} -B ${HOST_BINARY_DIR} -G ${GENERATOR}
    -DTELVARRA_INCLUDE_DIR=${TELVARRA_INCLUDE_DIR} -DTELVARRA_LIBRARY=${TELVARRA_LIBRARY}
    -DTELVARRA_RUNTIME_DIR=${TELVARRA_RUNTIME_DIR}
    -DTELVARRA_TEST_SUPPORT_DIR=${TELVARRA_TEST_SUPPORT_DIR})
if(TOOLCHAIN_FILE)
  list(APPEND configure_args -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN_FILE})
endif()
if(SANITIZE)
  list(APPEND configure_args "-DCMAKE_CXX_FLAGS=-fsanitize=address,undefined"
                             "-DCMAKE_C_FLAGS=-fsanitize=address,undefined")
endif()

execute_process(COMMAND ${CMAKE_COMMAND} ${configure_args} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "configuring the host programs failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${HOST_BINARY_DIR} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "building the host programs failed")
endif()

# The simulated vendor SDKs live beside the library and are found through the search path.
set(ENV{LD_LIBRARY_PATH} "${TELVARRA_RUNTIME_DIR}")
# The C interface's host drives simulator cameras of a rig of its own; the others fake theirs.
set(rig ${HOST_BINARY_DIR}/hosts.rig)
file(WRITE ${rig} "hikvision id=CAPI01 size=64x48 format=mono8\ncanon id=CAPIEOS size=64x48\n")
foreach(program cpp_host c_host exit_host c_api_host)
  set(work_dir ${HOST_BINARY_DIR}/work-${program})
  file(MAKE_DIRECTORY ${work_dir})
  if(program STREQUAL "c_api_host")
    set(ENV{TELVARRA_SIM_RIG} ${rig})
  else()
    unset(ENV{TELVARRA_SIM_RIG})
  endif()
  if(EMULATOR)
    # The DLL is found through Wine's search path; the program and its files use drive Z:.
    string(REPLACE "/" "\\" wine_path "Z:${TELVARRA_RUNTIME_DIR}")
    set(ENV{WINEPATH} "${wine_path}")
    set(ENV{WINEDEBUG} "-all")
    execute_process(COMMAND ${EMULATOR} ${HOST_BINARY_DIR}/${program}.exe Z:${work_dir}
                    WORKING_DIRECTORY ${work_dir} RESULT_VARIABLE result)
  else()
    execute_process(COMMAND ${HOST_BINARY_DIR}/${program} ${work_dir}
                    WORKING_DIRECTORY ${work_dir} RESULT_VARIABLE result)
  endif()
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${program} failed at step ${result}")
  endif()
endforeach()

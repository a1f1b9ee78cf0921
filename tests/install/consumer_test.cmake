# Installs the build into a fresh prefix, then builds and runs a consumer
# program twice: as a CMake project finding the package, and with the
# compiler alone from what pkg-config says. Nothing but the prefix is used:
# the library finds the host platform's stand-ins beside itself, as the
# simulated host and the installed tvhost do.
#
#   cmake -DBUILD_DIR=<build> -DPREFIX=<empty dir> -DWORK=<scratch dir> -DSOURCE=<tests/install>
#         -DC_COMPILER=<cc> [-DPRELOAD=<sanitizer runtime>] -P consumer_test.cmake
#
# A library built with AddressSanitizer runs only behind its runtime (PRELOAD).

cmake_minimum_required(VERSION 3.25)

foreach(_var BUILD_DIR PREFIX WORK SOURCE C_COMPILER)
  if(NOT DEFINED ${_var})
    message(FATAL_ERROR "consumer_test.cmake needs -D${_var}=...")
  endif()
endforeach()

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE _status OUTPUT_VARIABLE _out ERROR_VARIABLE _err)
  if(NOT _status EQUAL 0)
    string(REPLACE ";" " " _command "${ARGN}")
    message(FATAL_ERROR "failed (${_status}): ${_command}\n${_out}\n${_err}")
  endif()
  set(OUTPUT "${_out}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${PREFIX} ${WORK})
file(MAKE_DIRECTORY ${PREFIX} ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX})

# What a user gets: the header, the versioned library and its links, both
# package files, the reference with the protocol beside it, the API as data;
# the simulated host with its header, the stand-ins and tvhost.
file(GLOB_RECURSE _installed RELATIVE ${PREFIX} ${PREFIX}/*)
foreach(_expected include/tvAPIC.h lib/cmake/tvAPIC/tvAPICConfig.cmake lib/cmake/tvAPIC/tvAPICConfigVersion.cmake
                  lib/cmake/tvAPIC/tvAPICTargets.cmake lib/pkgconfig/tvAPIC.pc lib/libtvAPIC.so lib/libtvAPIC.so.0
                  share/doc/tvAPIC/api/index.html share/doc/tvAPIC/api/protocol.md share/tvAPIC/tvAPIC.catalogue.json
                  include/tvAPIC-simulated-host/sim/sim.h lib/cmake/tvAPIC/tvAPICSimulatedHostTargets.cmake
                  lib/pkgconfig/tvAPIC-simulated-host.pc lib/libtvsim.so lib/libtvapi.so lib/libtvSys2.so
                  lib/libtvEventsBus.so lib/libUI_App.so bin/tvhost)
  if(NOT _expected IN_LIST _installed)
    message(FATAL_ERROR "not installed: ${_expected}\ninstalled: ${_installed}")
  endif()
endforeach()

# Whatever the environment says, only the prefix is searched.
set(_env ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH)
set(_run ${_env})
if(PRELOAD)
  list(APPEND _run "LD_PRELOAD=${PRELOAD}" "ASAN_OPTIONS=detect_leaks=0")
endif()

# The installed tvhost finds its libraries.
run(${_run} ${PREFIX}/bin/tvhost --help)

# CMake: find_package(tvAPIC CONFIG) from the prefix alone.
run(${_env} ${CMAKE_COMMAND} -S ${SOURCE}/consumer -B ${WORK}/cmake -DCMAKE_PREFIX_PATH=${PREFIX}
    -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_BUILD_TYPE=Release)
run(${_env} ${CMAKE_COMMAND} --build ${WORK}/cmake)
run(${_run} ${WORK}/cmake/consumer)
if(NOT OUTPUT MATCHES "tvAPIC consumer: ok")
  message(FATAL_ERROR "the CMake consumer printed:\n${OUTPUT}")
endif()

# pkg-config: the compiler given only its flags, and the run path a program
# needs for libraries outside the system's folders.
find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${PREFIX}/lib/pkgconfig ${PKG_CONFIG} --cflags --libs
      tvAPIC tvAPIC-simulated-host)
  string(STRIP "${OUTPUT}" _flags)
  separate_arguments(_flags UNIX_COMMAND "${_flags}")
  run(${_env} ${C_COMPILER} -std=c99 ${SOURCE}/consumer/consumer.c ${_flags} -Wl,-rpath,${PREFIX}/lib
      -o ${WORK}/consumer_pc)
  run(${_run} ${WORK}/consumer_pc)
  if(NOT OUTPUT MATCHES "tvAPIC consumer: ok")
    message(FATAL_ERROR "the pkg-config consumer printed:\n${OUTPUT}")
  endif()
else()
  message(STATUS "pkg-config not found: the pkg-config consumer was not built")
endif()
message(STATUS "both consumers built against ${PREFIX} and ran")

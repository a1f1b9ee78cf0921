# Installs the build into a fresh prefix, then builds and runs a consumer
# program twice: as a CMake project finding the package, and with the
# compiler alone from what pkg-config says.
#
#   cmake -DBUILD_DIR=<build> -DPREFIX=<empty dir> -DWORK=<scratch dir> -DSOURCE=<tests/install>
#         -DHOST_LIBRARY_DIRS=<dirs;...> -DC_COMPILER=<cc> [-DPRELOAD=<sanitizer runtime>] -P consumer_test.cmake
#
# The library needs the host platform's libraries to link and to load, as
# inside the host application: HOST_LIBRARY_DIRS gives those of the stand-in.
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

# What a user gets: the header, the versioned library and its links, both package files, the
# reference with the protocol beside it.
file(GLOB_RECURSE _installed RELATIVE ${PREFIX} ${PREFIX}/*)
foreach(_expected include/tvAPIC.h lib/cmake/tvAPIC/tvAPICConfig.cmake lib/cmake/tvAPIC/tvAPICConfigVersion.cmake
                  lib/cmake/tvAPIC/tvAPICTargets.cmake lib/pkgconfig/tvAPIC.pc lib/libtvAPIC.so lib/libtvAPIC.so.0
                  share/doc/tvAPIC/api/index.html share/doc/tvAPIC/api/protocol.md)
  if(NOT _expected IN_LIST _installed)
    message(FATAL_ERROR "not installed: ${_expected}\ninstalled: ${_installed}")
  endif()
endforeach()

string(REPLACE ";" ":" _host_path "${HOST_LIBRARY_DIRS}")
set(_env ${CMAKE_COMMAND} -E env "LD_LIBRARY_PATH=${PREFIX}/lib:${_host_path}")
set(_run ${_env})
if(PRELOAD)
  list(APPEND _run "LD_PRELOAD=${PRELOAD}" "ASAN_OPTIONS=detect_leaks=0")
endif()

# CMake: find_package(tvAPIC CONFIG) from the prefix alone.
run(${_env} ${CMAKE_COMMAND} -S ${SOURCE}/consumer -B ${WORK}/cmake -DCMAKE_PREFIX_PATH=${PREFIX}
    -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_BUILD_TYPE=Release)
run(${_env} ${CMAKE_COMMAND} --build ${WORK}/cmake)
run(${_run} ${WORK}/cmake/consumer)
if(NOT OUTPUT MATCHES "tvAPIC consumer: ok")
  message(FATAL_ERROR "the CMake consumer printed:\n${OUTPUT}")
endif()

# pkg-config: the compiler given only its flags.
find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${PREFIX}/lib/pkgconfig ${PKG_CONFIG} --cflags --libs tvAPIC)
  string(STRIP "${OUTPUT}" _flags)
  separate_arguments(_flags UNIX_COMMAND "${_flags}")
  run(${_env} ${C_COMPILER} -std=c99 ${SOURCE}/consumer/consumer.c ${_flags} -o ${WORK}/consumer_pc)
  run(${_run} ${WORK}/consumer_pc)
  if(NOT OUTPUT MATCHES "tvAPIC consumer: ok")
    message(FATAL_ERROR "the pkg-config consumer printed:\n${OUTPUT}")
  endif()
else()
  message(STATUS "pkg-config not found: the pkg-config consumer was not built")
endif()
message(STATUS "both consumers built against ${PREFIX} and ran")

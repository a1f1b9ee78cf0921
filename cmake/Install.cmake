# Installation (`cmake --install build --prefix P`), in two components:
#
#   Library        libtvAPIC with a versioned name, tvAPIC.h, the CMake package
#                  (find_package(tvAPIC CONFIG) gives tvAPIC::tvAPIC) and tvAPIC.pc.
#   SimulatedHost  what a developer without the application runs the library
#                  against: the stand-ins of the host's libraries (tvapi,
#                  tvSys2, tvEventsBus, UI_App), the simulated host libtvsim
#                  with its header sim/sim.h (tvAPIC::SimulatedHost, the
#                  package's component SimulatedHost, tvAPIC-simulated-host.pc)
#                  and tvhost, which serves it over the API Server.
#
# Inside the application its own libraries take the stand-ins' place: there
# the Library component is installed alone (`--component Library`). Both are
# relocatable: the libraries find one another beside themselves, tvhost finds
# them in the library folder, and the package files find the prefix from
# where they lie.
include(CMakePackageConfigHelpers)

set(TVAPIC_CMAKE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/tvAPIC)
set(TVAPIC_SIM_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/tvAPIC-simulated-host)
set(_host_libraries tvapi tvSys2 tvEventsBus UI_App tvsim)

set_target_properties(tvAPIC PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
# The build tree holds them as the install lays them out (with the default
# folders): the libraries side by side in lib/, the programs in bin/ (on
# Windows every DLL and program in bin/, cmake/Windows.cmake). A program run
# from the build tree finds the libraries as an installed one does.
if(NOT WIN32)
  set_target_properties(tvAPIC ${_host_libraries} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
endif()
set_target_properties(tvhost inprocess_demo PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
target_include_directories(tvAPIC INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_include_directories(tvsim INTERFACE $<INSTALL_INTERFACE:${TVAPIC_SIM_INCLUDE_DIR}>)
set_target_properties(tvsim PROPERTIES EXPORT_NAME SimulatedHost)
if(NOT WIN32 AND NOT APPLE)
  # Windows finds a program's DLLs beside it: all of them go to bin/.
  set_target_properties(tvAPIC ${_host_libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
  set_target_properties(tvhost PROPERTIES INSTALL_RPATH "$ORIGIN/${TVAPIC_BIN_TO_LIB}")
endif()

install(TARGETS tvAPIC EXPORT tvAPICTargets COMPONENT Library
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${TVAPIC_GENERATED_DIR}/include/tvAPIC.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Library)
# The API as data, for binding generators of other languages (docs/catalogue-json.md).
install(FILES ${TVAPIC_GENERATED_DIR}/tvAPIC.catalogue.json DESTINATION ${CMAKE_INSTALL_DATADIR}/tvAPIC COMPONENT Library)
install(FILES ${PROJECT_SOURCE_DIR}/docs/catalogue-json.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/api COMPONENT Library)
install(EXPORT tvAPICTargets NAMESPACE tvAPIC:: DESTINATION ${TVAPIC_CMAKE_PACKAGE_DIR} COMPONENT Library)

install(TARGETS ${_host_libraries} tvhost EXPORT tvAPICSimulatedHostTargets COMPONENT SimulatedHost
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# sim/sim.h, as the in-process demonstration includes it, with the one header it needs.
install(FILES ${PROJECT_SOURCE_DIR}/host/sim/sim.h DESTINATION ${TVAPIC_SIM_INCLUDE_DIR}/sim COMPONENT SimulatedHost)
install(FILES ${PROJECT_SOURCE_DIR}/host/tvapi/include/tvapi/export.h
  DESTINATION ${TVAPIC_SIM_INCLUDE_DIR}/tvapi COMPONENT SimulatedHost)
install(EXPORT tvAPICSimulatedHostTargets NAMESPACE tvAPIC:: DESTINATION ${TVAPIC_CMAKE_PACKAGE_DIR}
  COMPONENT SimulatedHost)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/tvAPICConfig.cmake.in
  ${PROJECT_BINARY_DIR}/tvAPICConfig.cmake
  INSTALL_DESTINATION ${TVAPIC_CMAKE_PACKAGE_DIR}
  PATH_VARS CMAKE_INSTALL_INCLUDEDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tvAPICConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tvAPICConfig.cmake ${PROJECT_BINARY_DIR}/tvAPICConfigVersion.cmake
  DESTINATION ${TVAPIC_CMAKE_PACKAGE_DIR} COMPONENT Library)

file(RELATIVE_PATH TVAPIC_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" TVAPIC_PC_TO_PREFIX "${TVAPIC_PC_TO_PREFIX}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/tvAPIC.pc.in ${PROJECT_BINARY_DIR}/tvAPIC.pc @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/cmake/tvAPIC-simulated-host.pc.in ${PROJECT_BINARY_DIR}/tvAPIC-simulated-host.pc
  @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tvAPIC.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Library)
install(FILES ${PROJECT_BINARY_DIR}/tvAPIC-simulated-host.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT SimulatedHost)

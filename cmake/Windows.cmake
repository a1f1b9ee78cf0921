# Windows builds: the names the host loads (tvAPIC.dll, tvapi.dll, ... and
# not MinGW's lib-prefixed ones), and every program and DLL in one folder,
# where Windows finds a program's DLLs without a PATH of its own.
set(CMAKE_SHARED_LIBRARY_PREFIX "")
set(CMAKE_IMPORT_LIBRARY_PREFIX "")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

# The generated sources need more sections than an ordinary COFF object holds.
if(MSVC)
  # The sources are UTF-8; exceptions as the standard has them.
  add_compile_options(/utf-8 /EHsc /bigobj)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-Wa,-mbig-obj)
endif()
# Asio wants to know the Windows version it targets: Windows 10.
add_compile_definitions(_WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX)

if(CMAKE_CROSSCOMPILING)
  # Boost (header-only for Asio and System) and utfcpp come from the build
  # machine's packages, through a folder that holds only them: the build
  # machine's /usr/include itself would bring Linux headers along.
  set(TVAPIC_CROSS_INCLUDE_DIR ${PROJECT_BINARY_DIR}/cross-include)
  foreach(_headers IN ITEMS boost utf8cpp)
    if(NOT EXISTS /usr/include/${_headers})
      message(FATAL_ERROR "/usr/include/${_headers} is missing: scripts/setup installs it")
    endif()
    file(MAKE_DIRECTORY ${TVAPIC_CROSS_INCLUDE_DIR})
    file(CREATE_LINK /usr/include/${_headers} ${TVAPIC_CROSS_INCLUDE_DIR}/${_headers} SYMBOLIC)
  endforeach()
  include_directories(SYSTEM ${TVAPIC_CROSS_INCLUDE_DIR})

  add_library(tvapic_boost_system INTERFACE)
  target_link_libraries(tvapic_boost_system INTERFACE ws2_32 mswsock)
  add_library(Boost::system ALIAS tvapic_boost_system)
else()
  find_package(Boost 1.74 REQUIRED COMPONENTS system)
  target_link_libraries(Boost::system INTERFACE ws2_32 mswsock)
endif()

# Runs the generator: the catalogue becomes headers, wrappers, probes and the
# export sweep in the build tree. The list of outputs is read at configure
# time, so adding an interface group or part re-runs the configuration.
set(TVAPIC_CATALOGUE_DIR ${PROJECT_SOURCE_DIR}/catalogue)
set(TVAPIC_GENERATED_DIR ${PROJECT_BINARY_DIR}/generated)
file(GLOB TVAPIC_CATALOGUE_FILES CONFIGURE_DEPENDS ${TVAPIC_CATALOGUE_DIR}/*.api)
file(GLOB_RECURSE TVAPIC_GENERATOR_FILES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/tvgen/*.py)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  ${TVAPIC_CATALOGUE_FILES} ${TVAPIC_GENERATOR_FILES})

set(TVAPIC_GENERATE ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/generate.py
    --catalogue ${TVAPIC_CATALOGUE_DIR})

# The files a generator run writes into `dir`, given that run's options.
function(tvapic_generator_outputs out dir)
  execute_process(COMMAND ${TVAPIC_GENERATE} ${ARGN} --list
    OUTPUT_VARIABLE _outputs OUTPUT_STRIP_TRAILING_WHITESPACE
    RESULT_VARIABLE _status ERROR_VARIABLE _error)
  if(NOT _status EQUAL 0)
    message(FATAL_ERROR "The catalogue does not read:\n${_error}")
  endif()
  list(TRANSFORM _outputs PREPEND ${dir}/)
  set(${out} ${_outputs} PARENT_SCOPE)
endfunction()

tvapic_generator_outputs(TVAPIC_GENERATED_FILES ${TVAPIC_GENERATED_DIR})

add_custom_command(
  OUTPUT ${TVAPIC_GENERATED_FILES}
  COMMAND ${TVAPIC_GENERATE} --out ${TVAPIC_GENERATED_DIR}
  DEPENDS ${TVAPIC_CATALOGUE_FILES} ${TVAPIC_GENERATOR_FILES} ${PROJECT_SOURCE_DIR}/tools/generate.py
  COMMENT "Generating sources from the catalogue"
  VERBATIM)
add_custom_target(tvapic_generated DEPENDS ${TVAPIC_GENERATED_FILES})

# Generated files of one kind, e.g. tvapic_generated_files(API_SOURCES "api/").
function(tvapic_generated_files out prefix)
  set(_files "")
  foreach(_f IN LISTS TVAPIC_GENERATED_FILES)
    string(FIND "${_f}" "${TVAPIC_GENERATED_DIR}/${prefix}" _at)
    if(_at EQUAL 0 AND _f MATCHES "\\.cpp$")
      list(APPEND _files ${_f})
    endif()
  endforeach()
  set(${out} ${_files} PARENT_SCOPE)
endfunction()

# Generated test support (probe faces, sweep cases) is large and runs once per
# test: it compiles without optimisation, which is several times faster.
function(tvapic_unoptimised)
  if(NOT MSVC)
    set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS "-O0;-g0")
  endif()
endfunction()

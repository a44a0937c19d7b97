# Script: install BUILD_DIR into WORK_DIR/prefix, then check what a consumer
# gets: every installed header names only installed headers, the shared
# libraries export no test seam and nothing internal, the installed tool runs,
# and a consumer builds and runs against the prefix, once through the CMake
# package and once through pkg-config.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed (${rc}): ${ARGN}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# One include root, and nothing named in it that isn't there.
file(GLOB include_roots LIST_DIRECTORIES true ${prefix}/include/*)
list(LENGTH include_roots root_count)
if(NOT root_count EQUAL 1)
  message(FATAL_ERROR "installed include roots: ${include_roots}")
endif()
file(GLOB_RECURSE headers ${include_roots}/*.h)
foreach(header ${headers})
  if(header MATCHES "_(testing|internal)\\.h$")
    message(FATAL_ERROR "installed a private header: ${header}")
  endif()
  file(STRINGS ${header} includes REGEX "^#include \"")
  foreach(line ${includes})
    string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" named "${line}")
    if(NOT EXISTS ${include_roots}/${named})
      message(FATAL_ERROR "${header} includes ${named}, which isn't installed")
    endif()
  endforeach()
endforeach()

# The libraries' exported names: no seam, nothing internal.
file(GLOB libraries ${prefix}/lib*/libOhm*.so)
foreach(library ${libraries})
  run(nm -DC --defined-only ${library})
  string(REGEX MATCHALL "[^\n]*(_testing|_internal)[^\n]*" private "${last_output}")
  if(private)
    message(FATAL_ERROR "${library} exports private names:\n${private}")
  endif()
endforeach()

# The tool runs from the prefix and finds its libraries there.
run(${prefix}/bin/ohm --version)
run(ldd ${prefix}/bin/ohm)
if(NOT last_output MATCHES "libOhmUtils[^\n]*=> ${prefix}/")
  message(FATAL_ERROR "installed ohm doesn't load the installed library:\n${last_output}")
endif()

foreach(mode package pkgconfig)
  set(build ${WORK_DIR}/build-${mode})
  run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${build} -G ${GENERATOR} -DCMAKE_PREFIX_PATH=${prefix}
      -DCONSUMER_MODE=${mode})
  run(${CMAKE_COMMAND} --build ${build})
  run(${build}/consumer)
  if(NOT last_output MATCHES "K1\\+M2/SHT03-3\\.105")
    message(FATAL_ERROR "consumer (${mode}) printed: ${last_output}")
  endif()
endforeach()
message(STATUS "consumer built and ran against ${prefix}")

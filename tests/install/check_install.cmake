# Script: install BUILD_DIR into WORK_DIR/prefix, then configure, build and run
# the consumer against it, once through the CMake package and once through
# pkg-config.
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

# Installs the built library into a private prefix, then configures, builds
# and runs a small outside project against it: once through the CMake package
# and once through pkg-config.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}\n${err}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/consumer -B ${WORK_DIR}/build -DCMAKE_PREFIX_PATH=${prefix})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)

# pkg-config: compile the same program with the flags the .pc file gives.
find_program(PKG_CONFIG pkg-config REQUIRED)
find_program(CXX_COMPILER NAMES c++ g++ REQUIRED)
file(GLOB_RECURSE pc_file ${prefix}/*/orvane.pc)
get_filename_component(pc_dir "${pc_file}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${pc_dir})
execute_process(COMMAND ${PKG_CONFIG} --cflags --libs orvane OUTPUT_VARIABLE flags RESULT_VARIABLE result
                OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "pkg-config does not know orvane")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX_COMPILER} ${SOURCE_DIR}/tests/consumer/consumer.cpp -o ${WORK_DIR}/consumer_pc ${flags}
    -Wl,-rpath,${pc_dir}/..)
run(${WORK_DIR}/consumer_pc)

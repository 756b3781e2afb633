# Run by ctest with -P: BUILD_DIR, WORK_DIR, CONSUMER_DIR, CXX_COMPILER, CONSUMER_FLAGS, Qt5_DIR.

set(expected "Binning Factor: 8")
set(prefix ${WORK_DIR}/prefix)

function(run what)
    execute_process(COMMAND ${ARGN}
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${what} failed (${status}):\n${ARGN}\n${output}\n${errors}")
    endif()
    set(run_output "${output}" PARENT_SCOPE)
endfunction()

function(expect_output what output)
    string(STRIP "${output}" output)
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "${what} printed \"${output}\", expected \"${expected}\"")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
run("installing" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# The CMake package.
run("configuring the consumer" ${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${WORK_DIR}/consumer
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DQt5_DIR=${Qt5_DIR}
    "-DCMAKE_CXX_FLAGS=${CONSUMER_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${CONSUMER_FLAGS}")
run("building the consumer" ${CMAKE_COMMAND} --build ${WORK_DIR}/consumer)
run("running the consumer" ${WORK_DIR}/consumer/consumer)
expect_output("the consumer built with the CMake package" "${run_output}")

# The pkg-config file: found through PKG_CONFIG_PATH alone, and pointing into this prefix.
file(GLOB_RECURSE pc_files ${prefix}/ovparser.pc)
list(LENGTH pc_files pc_count)
if(NOT pc_count EQUAL 1)
    message(FATAL_ERROR "expected one ovparser.pc under ${prefix}, found: ${pc_files}")
endif()
get_filename_component(pc_dir ${pc_files} DIRECTORY)
get_filename_component(lib_dir ${pc_dir} DIRECTORY)
find_program(PKG_CONFIG NAMES pkg-config pkgconf REQUIRED)
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
run("pkg-config" ${PKG_CONFIG} --cflags --libs ovparser)
string(STRIP "${run_output}" pc_flags)
separate_arguments(pc_args UNIX_COMMAND "${pc_flags}")
# The paths may be written relative to the .pc file's folder; compare them resolved.
get_filename_component(want_include ${prefix}/include/ovparser REALPATH)
get_filename_component(want_lib ${lib_dir} REALPATH)
set(include_found FALSE)
set(lib_found FALSE)
foreach(arg IN LISTS pc_args)
    if(arg MATCHES "^-([IL])(.+)$")
        get_filename_component(path "${CMAKE_MATCH_2}" REALPATH)
        if(CMAKE_MATCH_1 STREQUAL "I" AND path STREQUAL want_include)
            set(include_found TRUE)
        elseif(CMAKE_MATCH_1 STREQUAL "L" AND path STREQUAL want_lib)
            set(lib_found TRUE)
        endif()
    endif()
endforeach()
if(NOT include_found OR NOT lib_found)
    message(FATAL_ERROR "pkg-config gives \"${pc_flags}\", which does not point at the "
                        "headers and library installed under ${prefix}")
endif()
separate_arguments(extra_args UNIX_COMMAND "${CONSUMER_FLAGS}")
# Qt requires position-independent code from its users.
run("compiling with the pkg-config flags" ${CXX_COMPILER} -std=c++17 -fPIC ${extra_args}
    ${CONSUMER_DIR}/main.cpp ${pc_args} -Wl,-rpath,${lib_dir} -o ${WORK_DIR}/consumer-pc)
run("running the pkg-config consumer" ${WORK_DIR}/consumer-pc)
expect_output("the consumer built with pkg-config" "${run_output}")

message(STATUS "installed into ${prefix}; both consumers print \"${expected}\"")

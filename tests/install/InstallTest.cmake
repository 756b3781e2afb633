# Run by ctest with -P: BUILD_DIR, WORK_DIR, CONSUMER_DIR, CXX_COMPILER, CONSUMER_FLAGS, Qt5_DIR,
# VERSION.
#
# Installs the build into a prefix and uses it as people do: a CMake project through the
# package, a program compiled with nothing but the flags of pkg-config, and the installed
# ovtool. The prefix is then moved to another folder, where pkg-config, the program and ovtool
# must still work.

set(expected "Binning Factor: 8")
set(prefix ${WORK_DIR}/prefix)
set(moved_prefix ${WORK_DIR}/moved/prefix)

# Only the run paths written into the programs may lead them to the library.
unset(ENV{LD_LIBRARY_PATH})

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

# Sets pc_args to the flags pkg-config gives for the ovparser.pc installed under `root`, and
# lib_dir to the library folder; fails unless the flags point at that prefix's headers and
# library.
function(pkg_config_flags root)
    file(GLOB_RECURSE pc_files ${root}/ovparser.pc)
    list(LENGTH pc_files pc_count)
    if(NOT pc_count EQUAL 1)
        message(FATAL_ERROR "expected one ovparser.pc under ${root}, found: ${pc_files}")
    endif()
    get_filename_component(pc_dir ${pc_files} DIRECTORY)
    get_filename_component(lib_dir ${pc_dir} DIRECTORY)
    find_program(PKG_CONFIG NAMES pkg-config pkgconf REQUIRED)
    set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
    run("pkg-config" ${PKG_CONFIG} --cflags --libs ovparser)
    string(STRIP "${run_output}" pc_flags)
    separate_arguments(args UNIX_COMMAND "${pc_flags}")
    # The paths may be written relative to the .pc file's folder; compare them resolved.
    get_filename_component(want_include ${root}/include/ovparser REALPATH)
    get_filename_component(want_lib ${lib_dir} REALPATH)
    set(include_found FALSE)
    set(lib_found FALSE)
    foreach(arg IN LISTS args)
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
                            "headers and library installed under ${root}")
    endif()
    set(pc_args "${args}" PARENT_SCOPE)
    set(lib_dir "${lib_dir}" PARENT_SCOPE)
endfunction()

# Compiles the consumer with the pkg-config flags alone and a run path to the library, and
# runs it. CONSUMER_FLAGS is empty except in a sanitizer build, where the program has to bring
# the sanitizer runtime that the library was linked against.
function(check_pkg_config_consumer root label)
    pkg_config_flags(${root})
    separate_arguments(sanitizer_args UNIX_COMMAND "${CONSUMER_FLAGS}")
    set(program ${WORK_DIR}/consumer-pc-${label})
    run("compiling with the pkg-config flags (${label})" ${CXX_COMPILER} ${sanitizer_args}
        ${CONSUMER_DIR}/main.cpp ${pc_args} -Wl,-rpath,${lib_dir} -o ${program})
    run("running the pkg-config consumer (${label})" ${program})
    expect_output("the consumer built with pkg-config (${label})" "${run_output}")
endfunction()

# The installed ovtool runs from where it lies and names the version of the tool and of the
# library it loaded.
function(check_ovtool root label)
    run("running ${root}/bin/ovtool --version (${label})" ${root}/bin/ovtool --version)
    set(want "ovtool ${VERSION}\novparser library ${VERSION}\n")
    if(NOT run_output STREQUAL want)
        message(FATAL_ERROR "ovtool --version (${label}) printed \"${run_output}\", "
                            "expected \"${want}\"")
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

check_pkg_config_consumer(${prefix} installed)
check_ovtool(${prefix} installed)

# The same prefix somewhere else: nothing in it may name the folder it was installed into.
file(MAKE_DIRECTORY ${WORK_DIR}/moved)
file(RENAME ${prefix} ${moved_prefix})
check_pkg_config_consumer(${moved_prefix} moved)
check_ovtool(${moved_prefix} moved)

message(STATUS "installed into ${prefix} and moved to ${moved_prefix}: the consumers print "
               "\"${expected}\", ovtool names version ${VERSION}")

# What the tests of an installation and of the packages share: both build and run Examples/Host against one.
# Variables: SOURCE, WORK, CXX, FLAGS.

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGV}\n${output}\n${errors}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_output expected)
    run(${ARGN})
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "${ARGN} wrote\n${output}\nand not\n${expected}")
    endif()
endfunction()

# Whether a program needs the shared library.
function(expect_needed program expected)
    run(readelf -d "${program}")
    string(REGEX MATCH "NEEDED[^\n]*libOvraGeometryDatabase.so.1]" needed "${output}")
    if((needed AND NOT expected) OR (expected AND NOT needed))
        message(FATAL_ERROR "${program} has the dependencies\n${output}")
    endif()
endfunction()

set(one_tetrahedron "1 4 4 7 1 0 1 2 3 4\n-1\n")

# Builds a host with what pkg-config says of a module, and runs it. More arguments go to pkg-config.
function(build_with_pkg_config name libdir module)
    set(ENV{PKG_CONFIG_PATH} "${libdir}/pkgconfig")
    execute_process(COMMAND pkg-config ${ARGN} --cflags --libs ${module}
                    RESULT_VARIABLE result OUTPUT_VARIABLE flags ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "pkg-config does not know the installed ${module}: ${errors}")
    endif()
    separate_arguments(flags UNIX_COMMAND "${flags} ${FLAGS}")
    run("${CXX}" -std=c++17 -fPIC "${SOURCE}/Examples/Host/main.cpp" -o "${WORK}/${name}"
        ${flags} "-Wl,-rpath,${libdir}")
    expect_output("${one_tetrahedron}" "${WORK}/${name}")
endfunction()


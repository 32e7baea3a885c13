# Installs the built library below WORK, then builds and runs Examples/Host against that tree: through the
# CMake package and through pkg-config, with the shared library and with the archive. Variables: BUILD, SOURCE, WORK, LIBDIR, CXX,
# FLAGS (extra compiler and linker flags, for instrumented builds), BINDIR, TOOL (whether ovrageo is
# built too, which must find the library where both were put), IMPORT and PICTURE (whether it imports and
# draws, and so must find its modules), VERSION.
include("${CMAKE_CURRENT_LIST_DIR}/TestHosts.cmake")

file(READ "${SOURCE}/README.md" readme)
file(READ "${SOURCE}/Examples/Host/solver-input.cpp" program)
string(FIND "${readme}" "${program}" position)
if(position EQUAL -1)
    message(FATAL_ERROR "README.md does not show Examples/Host/solver-input.cpp as it is")
endif()

file(REMOVE_RECURSE "${WORK}")
set(prefix "${WORK}/prefix")
run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${prefix}")
if(TOOL)
    expect_output("ovrageo ${VERSION}\n" "${prefix}/${BINDIR}/ovrageo" --version)
endif()

run("${CMAKE_COMMAND}" -S "${SOURCE}/Examples/Host" -B "${WORK}/cmake" -G Ninja
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run("${CMAKE_COMMAND}" --build "${WORK}/cmake")
expect_output("${one_tetrahedron}" "${WORK}/cmake/example-host")
expect_output("${one_tetrahedron}" "${WORK}/cmake/example-host-static")
expect_needed("${WORK}/cmake/example-host" TRUE)
expect_needed("${WORK}/cmake/example-host-static" FALSE)
execute_process(COMMAND "${WORK}/cmake/solver-input" WORKING_DIRECTORY "${WORK}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output)
if(NOT "${result}|${output}" STREQUAL "1|")
    message(FATAL_ERROR "without a case solver-input ended with ${result} and wrote\n${output}")
endif()
if(TOOL AND IMPORT)
    set(ovrageo "${prefix}/${BINDIR}/ovrageo")
    file(WRITE "${WORK}/case.geo" "SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 1, 2, 3};\n")
    # The mesher keeps some of its memory until the end.
    run("${CMAKE_COMMAND}" -E env ASAN_OPTIONS=detect_leaks=0 "${ovrageo}" import
        "${WORK}/case.geo" -o "${WORK}/case" --mesh-size 1)
    run("${ovrageo}" solver-input "${WORK}/case" -o /dev/stdout --scale 0.001 --sections nodes,elements)
    set(expected "${output}")
    execute_process(COMMAND "${WORK}/cmake/solver-input" WORKING_DIRECTORY "${WORK}"
                    RESULT_VARIABLE result OUTPUT_VARIABLE output)
    if(NOT result EQUAL 0 OR NOT output STREQUAL expected)
        message(FATAL_ERROR "solver-input ended with ${result} and wrote\n${output}\nand not\n${expected}")
    endif()
    if(PICTURE)
        run("${ovrageo}" export "${WORK}/case" -o "${WORK}/case.vtu")
        run("${ovrageo}" picture "${WORK}/case" -o "${WORK}/case.png" --size 300x200)
    endif()
endif()

# A host may be of any standard from C++17, and as strict as it likes. Qt's headers are not ours to judge.
file(GLOB headers RELATIVE "${prefix}/include/OvraGeometryDatabase" "${prefix}/include/OvraGeometryDatabase/*.h")
list(TRANSFORM headers REPLACE "(.+)" "#include <\\1>")
list(JOIN headers "\n" all_headers)
file(WRITE "${WORK}/all-headers.cpp" "${all_headers}\nint main() {}\n")
run(pkg-config --cflags-only-I Qt6Core)
string(REPLACE "-I" "-isystem" qt_folders "${output}")
separate_arguments(qt_folders UNIX_COMMAND "${qt_folders}")
foreach(standard 17 20 2b)
    run("${CXX}" -std=c++${standard} -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -fPIC -fsyntax-only ${qt_folders}
        "-I${prefix}/include/OvraGeometryDatabase" "${WORK}/all-headers.cpp")
endforeach()

build_with_pkg_config(pkg-config-host "${prefix}/${LIBDIR}" OvraGeometryDatabase)
expect_needed("${WORK}/pkg-config-host" TRUE)
build_with_pkg_config(pkg-config-static-host "${prefix}/${LIBDIR}" OvraGeometryDatabaseStatic)
expect_needed("${WORK}/pkg-config-static-host" FALSE)

# Where there is no shared library, --static makes do with the archive.
file(COPY "${prefix}/" DESTINATION "${WORK}/archive-alone" PATTERN "libOvraGeometryDatabase.so*" EXCLUDE)
build_with_pkg_config(pkg-config-archive-host "${WORK}/archive-alone/${LIBDIR}" OvraGeometryDatabase --static)

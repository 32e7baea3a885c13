# Makes the packages for Debian, installs them into a root of their own, builds Examples/Host against what
# is installed there, runs ovrageo and imports the Python module, and takes them out again: nothing may be
# left. Dependencies are only looked at, since fetching them takes minutes: Scripts/test-packages installs them, and
# walks a user's whole way. Variables: BUILD, SOURCE, WORK, LIBDIR, CXX, FLAGS, VERSION, MAJOR; TOOL, IMPORT, PICTURE and PYTHON, whether
# ovrageo, its import, its pictures and the module are built.
include("${CMAKE_CURRENT_LIST_DIR}/TestHosts.cmake")

set(library "libovrageometrydatabase${MAJOR}")
set(names ${library} libovrageometrydatabase-dev ovrageo-doc)
if(TOOL)
    list(APPEND names ovrageo)
endif()
if(PYTHON)
    list(APPEND names python3-ovrageo)
endif()

function(expect_equal what actual expected)
    if(NOT actual STREQUAL expected)
        message(FATAL_ERROR "${what}:\n${actual}\nand not\n${expected}")
    endif()
endfunction()

# The lines of a text that match an expression are none.
function(expect_none what expression text)
    string(REGEX MATCHALL "[^\n]*(${expression})[^\n]*" found "${text}")
    if(found)
        message(FATAL_ERROR "${what}:\n${found}")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK}")
# Packed fast, since nobody fetches these.
run("${CMAKE_COMMAND}" -E chdir "${BUILD}" cpack -G DEB -B "${WORK}/packages" -D CPACK_OVRA_COMPRESSION=gzip)
file(GLOB packages "${WORK}/packages/*.deb")
set(found "")
foreach(package IN LISTS packages)
    run(dpkg-deb -f "${package}" Package)
    string(STRIP "${output}" name)
    list(APPEND found ${name})
endforeach()
list(SORT found)
list(SORT names)
expect_equal("The packages are" "${found}" "${names}")

find_program(lintian lintian)
if(lintian)
    run("${lintian}" --allow-root --fail-on error,warning ${packages})
endif()

file(GLOB development "${WORK}/packages/libovrageometrydatabase-dev_*.deb")
run(dpkg-deb -f "${development}" Depends Section Multi-Arch)
expect_equal("The development package says" "${output}"
             "Depends: ${library} (= ${VERSION}-1), qt6-base-dev (>= 6.2)\nSection: libdevel\nMulti-Arch: same\n")

set(root "${WORK}/root")
function(dpkg)
    run(dpkg "--root=${root}" --log=/dev/null --force-not-root --force-bad-path --force-depends
        --force-script-chrootless ${ARGN})
endfunction()
function(files_of_root result)
    file(GLOB_RECURSE files LIST_DIRECTORIES true RELATIVE "${root}" "${root}/*")
    list(FILTER files EXCLUDE REGEX "^var(/|$)")
    set(${result} "${files}" PARENT_SCOPE)
endfunction()

file(WRITE "${root}/var/lib/dpkg/status" "")
file(MAKE_DIRECTORY "${root}/var/lib/dpkg/updates" "${root}/var/lib/dpkg/info" "${root}/var/lib/dpkg/triggers")
dpkg(--install ${packages})

# The pages lead somewhere where they are read, and what they call can be called.
set(documentation "${root}/usr/share/doc/ovrageo-doc")
run(/usr/bin/python3 -B "${SOURCE}/Documentation/tests/run_pages.py" --links "${documentation}")
foreach(program Examples/Formats/dump.py Examples/HeatConduction/heat.py Examples/HeatConduction/run-case
                Examples/Study/study.py Examples/Study/field.py Scripts/run-case)
    run(test -x "${documentation}/${program}")
endforeach()

# Programs and libraries are stripped, and look for libraries in no place of their own.
file(GLOB_RECURSE binaries "${root}/usr/bin/*" "${root}/usr/lib/*.so*")
foreach(binary IN LISTS binaries)
    run(readelf --wide --dynamic --section-headers "${binary}")
    expect_none("${binary} has" "RPATH|RUNPATH|\\.debug_info" "${output}")
endforeach()

set(prefix "${root}/usr")
set(ENV{LD_LIBRARY_PATH} "${prefix}/${LIBDIR}")
run("${CMAKE_COMMAND}" -S "${SOURCE}/Examples/Host" -B "${WORK}/cmake" -G Ninja
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run("${CMAKE_COMMAND}" --build "${WORK}/cmake" --target example-host)
expect_output("${one_tetrahedron}" "${WORK}/cmake/example-host")
build_with_pkg_config(pkg-config-host "${prefix}/${LIBDIR}" OvraGeometryDatabase)

if(TOOL)
    expect_output("ovrageo ${VERSION}\n" "${prefix}/bin/ovrageo" --version)
endif()
if(TOOL AND IMPORT)
    file(WRITE "${WORK}/case.geo" "SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 1, 2, 3};\n")
    run("${prefix}/bin/ovrageo" import "${WORK}/case.geo" -o "${WORK}/case" --mesh-size 1)
    run("${prefix}/bin/ovrageo" verify "${WORK}/case")
    if(PICTURE)
        run("${prefix}/bin/ovrageo" export "${WORK}/case" -o "${WORK}/case.vtu")
        run("${prefix}/bin/ovrageo" picture "${WORK}/case" -o "${WORK}/case.png" --size 300x200)
    endif()
endif()
if(PYTHON)
    run("${CMAKE_COMMAND}" -E env "PYTHONPATH=${prefix}/lib/python3/dist-packages" PYTHONDONTWRITEBYTECODE=1
        /usr/bin/python3 -c "import ovrageo; assert ovrageo.__file__.startswith('${prefix}')")
endif()

dpkg(--purge ${names})
files_of_root(left)
expect_equal("Packages that are taken out leave" "${left}" "")

# With all features off, the host is configured without any of the libraries that they need. Given
# SOURCE, WORK, and CXX.
set(features VTK GMSH CGNS METIS REPORT PYTHON)
list(TRANSFORM features REPLACE "(.+)" "-DOVRA_WITH_\\1=OFF")
file(REMOVE_RECURSE "${WORK}")
execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}" -G Ninja "-DCMAKE_CXX_COMPILER=${CXX}"
            -DBUILD_TESTING=OFF ${features}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "cannot be configured without features:\n${output}")
endif()
file(STRINGS "${WORK}/build.ninja" wanted REGEX "libgmsh|libTK|libcgns|libmetis|libvtk|opencascade|/vtk-")
list(LENGTH wanted count)
if(count GREATER 0)
    message(FATAL_ERROR "without features the build asks for their libraries:\n${wanted}")
endif()
file(STRINGS "${WORK}/build.ninja" host REGEX "^build [^ ]*/ovrageo:")
list(LENGTH host count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "without features the build has no host")
endif()
file(REMOVE_RECURSE "${WORK}")

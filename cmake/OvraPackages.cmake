# Packages for Debian, one for each component of the installation, and an archive of all. What Debian wants of
# a package beyond an installation stands in cmake/debian: contents.cmake adds it to the files ahead of the
# packing, control.cmake to what dpkg is told, after it.
set(CPACK_PACKAGE_VENDOR "Ovra")
set(CPACK_PACKAGE_CONTACT "Ovra maintainers <maintainers@ovra.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_GENERATOR TGZ DEB)
set(CPACK_STRIP_FILES ON)

set(debian "${PROJECT_SOURCE_DIR}/cmake/debian")
set(debian_release 1)
set(debian_version "${PROJECT_VERSION}-${debian_release}")
set(library_package "libovrageometrydatabase${PROJECT_VERSION_MAJOR}")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE none) # control.cmake packs them anew
set(CPACK_DEBIAN_PACKAGE_SOURCE ovrageometrydatabase)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${debian_release})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/Projects/GeometryDatabase")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PRE_BUILD_SCRIPTS "${debian}/contents.cmake")
set(CPACK_POST_BUILD_SCRIPTS "${debian}/control.cmake")
set(CPACK_OVRA_COMPRESSION xz)

# ovra_add_package(component package [ALL] SECTION section DESCRIPTION lines... [DEPENDS ...]): with ALL it is
# the same for all architectures. What its programs are linked to joins the dependencies by itself.
set(CPACK_COMPONENTS_ALL "")
function(ovra_add_package component package)
    cmake_parse_arguments(package "ALL" "SECTION" "DEPENDS;RECOMMENDS;SUGGESTS;DESCRIPTION;CONTROL" ${ARGN})
    string(TOUPPER ${component} key)
    string(REPLACE ";" "\n" description "${package_DESCRIPTION}")
    string(REPLACE ";" ", " depends "${package_DEPENDS}")
    string(REPLACE ";" ", " recommends "${package_RECOMMENDS}")
    string(REPLACE ";" ", " suggests "${package_SUGGESTS}")
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${package} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${package_SECTION} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_RECOMMENDS "${recommends}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_SUGGESTS "${suggests}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_CONTROL_EXTRA "${package_CONTROL}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_DESCRIPTION "${description}" PARENT_SCOPE)
    if(package_ALL)
        set(CPACK_DEBIAN_${key}_PACKAGE_ARCHITECTURE all PARENT_SCOPE)
        set(CPACK_DEBIAN_${key}_PACKAGE_SHLIBDEPS OFF PARENT_SCOPE)
    endif()
endfunction()

ovra_add_package(
    runtime ${library_package}
    SECTION libs
    DESCRIPTION
        "geometry and mesh of flow simulation cases - shared library"
        "OvraGeometryDatabase holds a CAD assembly's boundary representation and the"
        "finite-element mesh that is classified on it. It reads and writes the files of"
        "both, doubles, copies and ties what the flow solver needs so, and writes the"
        "solver's input."
        "."
        "This package has the shared library, which programs are linked to.")
ovra_add_package(
    development libovrageometrydatabase-dev
    SECTION libdevel
    DEPENDS "${library_package} (= ${debian_version})" "qt6-base-dev (>= 6.2)"
    SUGGESTS "ovrageo-doc"
    DESCRIPTION
        "geometry and mesh of flow simulation cases - development files"
        "OvraGeometryDatabase holds a CAD assembly's boundary representation and the"
        "finite-element mesh that is classified on it. It reads and writes the files of"
        "both, doubles, copies and ties what the flow solver needs so, and writes the"
        "solver's input."
        "."
        "This package has what a program needs to be built on the library: the headers,"
        "an archive for linking it in, and the files for CMake and pkg-config.")
if(OVRA_BUILD_TOOL)
    ovra_add_package(
        tool ovrageo
        SECTION science
        DEPENDS "${library_package} (= ${debian_version})"
        SUGGESTS "ovrageo-doc"
        DESCRIPTION
            "make, verify and prepare cases of flow and heat-transfer simulations"
            "ovrageo goes the whole road from a geometry to the input of a flow solver. It"
            "imports STEP, IGES, Gmsh, Abaqus, Nastran and other files, meshes what has no"
            "mesh, says whether a case is sound and what is wrong where, prepares it for the"
            "solver, and writes the solver's input."
            "."
            "It also compares cases, draws pictures of them without a display, writes pages"
            "to look at in a browser, and exports to VTK, CGNS, Gmsh and other formats.")
endif()
if(OVRA_BUILD_TOOL AND OVRA_WITH_PYTHON)
    # A compiled module is for the Python that it was built with alone.
    find_package(Python REQUIRED COMPONENTS Interpreter)
    math(EXPR next_python_minor "${Python_VERSION_MINOR} + 1")
    set(python "${Python_VERSION_MAJOR}.${Python_VERSION_MINOR}")
    set(next_python "${Python_VERSION_MAJOR}.${next_python_minor}")
    ovra_add_package(
        python python3-ovrageo
        SECTION python
        DEPENDS "${library_package} (= ${debian_version})" "ovrageo (= ${debian_version})"
                "python3 (>= ${python})" "python3 (<< ${next_python})" "python3-numpy"
        SUGGESTS "ovrageo-doc" "python3-distributed" "python3-matplotlib" "python3-meshio" "python3-scipy"
                 "python3-vtk9"
        CONTROL "${debian}/python/postinst" "${debian}/python/prerm"
        DESCRIPTION
            "make, verify and prepare cases of flow simulations - Python module"
            "The module ovrageo opens, builds, queries, prepares, verifies and writes cases"
            "of flow and heat-transfer simulations: geometry, the finite-element mesh that"
            "is classified on it, and the attributes of both. It imports and exports what"
            "the command-line program ovrageo does."
            "."
            "Coordinates, connectivity and attributes come and go as NumPy arrays.")
endif()
ovra_add_package(
    documentation ovrageo-doc ALL
    SECTION doc
    SUGGESTS "ovrageo" "libovrageometrydatabase-dev" "python3-ovrageo" "python3-scipy"
    DESCRIPTION
        "make, verify and prepare cases of flow simulations - documentation"
        "What the commands of ovrageo do with a case and why, the file formats and"
        "the solver input, every class of the library OvraGeometryDatabase, and how"
        "all of it is built."
        "."
        "With it come examples: five cases with their geometry, a host program in C++,"
        "a small solver in Python that reads the solver input, and a parameter study.")

include(CPack)

# Beside one another as in the sources, so that links hold; and the pages, where Scripts/documentation has
# made them.
set(documentation "${CMAKE_INSTALL_DATADIR}/doc/ovrageo-doc")
install(FILES "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CONTRIBUTING.md"
              "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
        DESTINATION "${documentation}" COMPONENT documentation)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Documentation" DESTINATION "${documentation}"
        COMPONENT documentation FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg"
        PATTERN site EXCLUDE PATTERN tests EXCLUDE)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Cases" "${PROJECT_SOURCE_DIR}/Examples" DESTINATION "${documentation}"
        COMPONENT documentation USE_SOURCE_PERMISSIONS PATTERN tests EXCLUDE PATTERN __pycache__ EXCLUDE)
install(PROGRAMS "${PROJECT_SOURCE_DIR}/Scripts/run-case" DESTINATION "${documentation}/Scripts"
        COMPONENT documentation)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/build/documentation/html" DESTINATION "${documentation}"
        COMPONENT documentation OPTIONAL)

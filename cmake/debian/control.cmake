# CPack runs this when it has made CPACK_PACKAGE_FILES. For Debian it opens each again, gives it the control
# files that CPack has no word for, takes those away that it writes unasked, and packs it.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()

function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
endfunction()

# The loader's cache is renewed by a trigger, not by a script; and programs that are linked to the library
# depend on the release whose functions they use.
function(describe_library control package)
    file(REMOVE "${control}/postinst" "${control}/postrm")
    file(COPY "${CMAKE_CURRENT_LIST_DIR}/triggers" DESTINATION "${control}")
    file(WRITE "${control}/shlibs"
         "libOvraGeometryDatabase ${CPACK_PACKAGE_VERSION_MAJOR} ${package} (>= ${CPACK_PACKAGE_VERSION})\n")
endfunction()

function(add_field control line)
    file(READ "${control}/control" text)
    file(WRITE "${control}/control" "${line}\n${text}")
endfunction()

foreach(file IN LISTS CPACK_PACKAGE_FILES)
    get_filename_component(name "${file}" NAME)
    string(REGEX REPLACE "_.*" "" package "${name}")
    set(root "${CPACK_TEMPORARY_DIRECTORY}/packed/${package}")
    file(REMOVE_RECURSE "${root}")
    file(MAKE_DIRECTORY "${root}")
    run(dpkg-deb -R "${file}" "${root}")
    if(package MATCHES "^lib")
        add_field("${root}/DEBIAN" "Multi-Arch: same")
    elseif(NOT package MATCHES "^python")
        add_field("${root}/DEBIAN" "Multi-Arch: foreign")
    endif()
    if(package MATCHES "[0-9]$")
        describe_library("${root}/DEBIAN" ${package})
    endif()
    run(dpkg-deb --root-owner-group -Z${CPACK_OVRA_COMPRESSION} -b "${root}" "${file}")
    file(REMOVE_RECURSE "${root}")
endforeach()

# Scripts/check-rooms accepts this tree, and finds each kind of include that it is there to find in a
# copy of it. Given SOURCE and WORK.

function(check_rooms tree result errors)
    execute_process(COMMAND "${SOURCE}/Scripts/check-rooms" "${tree}" RESULT_VARIABLE code ERROR_VARIABLE text)
    set(${result} "${code}" PARENT_SCOPE)
    set(${errors} "${text}" PARENT_SCOPE)
endfunction()

check_rooms("${SOURCE}" result errors)
if(NOT result STREQUAL "0" OR NOT errors STREQUAL "")
    message(FATAL_ERROR "The includes break the order:\n${errors}")
endif()

# A file of the copy gets one more line; the answer must be that one message.
function(expect_found file include message)
    file(REMOVE_RECURSE "${WORK}")
    file(MAKE_DIRECTORY "${WORK}")
    file(COPY "${SOURCE}/Projects/GeometryDatabase" "${SOURCE}/Projects/GeometryTool"
         DESTINATION "${WORK}/Projects")
    file(WRITE "${WORK}/${file}" "${include}\n")
    check_rooms("${WORK}" result errors)
    if(NOT result STREQUAL "1" OR NOT errors MATCHES "^${file}(:1)?: ${message}\n$")
        message(FATAL_ERROR "${file} with ${include} ends with ${result} and:\n${errors}")
    endif()
endfunction()

set(host Projects/GeometryTool)
set(library Projects/GeometryDatabase)
expect_found(${host}/Common/New.cpp [[#include "CaseFiles.h"]]
             "Common includes CaseFiles.h of Case, which is not below it")
expect_found(${host}/Prepare/New.h [[#include "SolverInput.h"]]
             "Prepare includes SolverInput.h of SolverInput, which is not below it")
expect_found(${host}/Import/Readers/New.h [[  #  include "ImportedMesh.h" // why]]
             "ImportReaders includes ImportedMesh.h of ImportImporter, which is not below it")
expect_found(${host}/Import/Importer/New.cpp [[#include "Readers/GmshReader.h"]]
             "includes Readers/GmshReader.h by a path")
expect_found(${library}/Vector.cpp [[#include "AttributeMap.h"]]
             "the layer values includes AttributeMap.h of attributes, which is not below it")
expect_found(${library}/Mesh.cpp [[#include "MeshSerializer.h"]]
             "the layer containers includes MeshSerializer.h of serializers, which is not below it")
expect_found(${library}/Solver.h [[#include "GbiWriter.h"]]
             "the layer preparation includes GbiWriter.h of writer, which is not below it")
expect_found(${library}/Vector.h [[#include "Progress.h"]] "the library includes Progress.h of the host")
expect_found(${library}/New.h "" "belongs to no layer; give it one in Scripts/check-rooms")
file(REMOVE_RECURSE "${WORK}")

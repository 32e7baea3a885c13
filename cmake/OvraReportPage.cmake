# Bundles the page of the report into one file, and that into a library. npm fetches what the lock file
# pins, and runs no scripts of these packages.

find_program(OVRA_NODE node REQUIRED)
find_program(OVRA_NPM npm REQUIRED)

function(ovra_add_report_page library folder)
    set(work "${CMAKE_CURRENT_BINARY_DIR}/report-page")
    set(packages "${folder}/package.json" "${folder}/package-lock.json" "${folder}/.npmrc")
    file(GLOB sources CONFIGURE_DEPENDS "${folder}/*.js" "${folder}/*.mjs" "${folder}/*.css"
                                        "${folder}/*.html" "${folder}/*.qrc")
    file(MAKE_DIRECTORY "${work}")
    add_custom_command(
        OUTPUT "${work}/fetched"
        DEPENDS ${packages}
        COMMAND "${CMAKE_COMMAND}" -E copy ${packages} "${work}"
        COMMAND "${OVRA_NPM}" ci --loglevel=error
        COMMAND "${CMAKE_COMMAND}" -E touch fetched
        WORKING_DIRECTORY "${work}"
        COMMENT "Fetching the packages of the report's page"
        VERBATIM)
    add_custom_command(
        OUTPUT "${work}/page.cpp"
        DEPENDS "${work}/fetched" ${sources}
        COMMAND "${CMAKE_COMMAND}" -E copy ${sources} "${work}"
        COMMAND "${OVRA_NODE}" build.mjs page.html
        COMMAND Qt6::rcc --name report page.qrc -o page.cpp
        WORKING_DIRECTORY "${work}"
        COMMENT "Bundling the report's page"
        VERBATIM)
    add_library(${library} STATIC "${work}/page.cpp")
    target_link_libraries(${library} PRIVATE Qt6::Core)
endfunction()

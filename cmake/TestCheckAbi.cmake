# Scripts/check-abi and Scripts/check-symbols accept a library that is as it was described, and find what has
# changed in others: of a tree with a library of one class. Given SOURCE, WORK and CXX.

set(headers "${WORK}/Projects/GeometryDatabase")
set(library "${WORK}/library.so")

function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE "${WORK}")
file(COPY "${SOURCE}/Scripts/check-abi" "${SOURCE}/Scripts/check-symbols" "${SOURCE}/Scripts/install-dependencies"
     DESTINATION "${WORK}/Scripts")
file(MAKE_DIRECTORY "${headers}/Abi")

# The library with what a class has; the version is that of the project.
function(make version virtuals others data)
    file(WRITE "${WORK}/CMakeLists.txt" "project(\n    Library\n    VERSION ${version}.0\n)\n")
    file(WRITE "${headers}/Thing.h" "namespace Ovra::Geo {\nclass Thing {\npublic:\n    virtual ~Thing();\n"
         "    ${virtuals}\n    ${others}\nprivate:\n    ${data}\n};\n}\n")
    set(members "${virtuals} ${others}")
    string(REPLACE "virtual " "" members "${members}")
    string(REGEX REPLACE "int ([a-z]+)\\(([a-z]*)\\);" "int Thing::\\1(\\2) { return 0; }" members "${members}")
    file(WRITE "${WORK}/Thing.cpp" "#include \"Thing.h\"\nnamespace Ovra::Geo {\nThing::~Thing() {}\n${members}\n}\n")
    run("${CXX}" -std=c++17 -g -shared -fPIC "-I${headers}" "${WORK}/Thing.cpp" -o "${library}")
endfunction()

# A message that is matched, or nothing where the script has nothing to say.
function(expect script message)
    execute_process(COMMAND "${WORK}/Scripts/${script}" "${library}"
                    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    string(COMPARE NOTEQUAL "${message}" "" code)
    if(NOT code)
        set(message "$")
    endif()
    if(NOT result EQUAL code OR NOT "${output}${errors}" MATCHES "^${message}")
        message(FATAL_ERROR "${script} ended with ${result} and wrote\n${output}${errors}\nand not ${message}")
    endif()
endfunction()

function(expect_of_both abi symbols)
    expect(check-abi "${abi}")
    expect(check-symbols "${symbols}")
endfunction()

set(virtuals "virtual int first();")
set(others "int second(); int third();")
set(data "int count = 0;")
set(breaks ".*programs that were linked to 1.0 break")
set(grows ".*the minor number must rise")
set(thing "Ovra::Geo::Thing")
set(told "check-symbols: lines with - are exported no more")

make(1.0 "${virtuals}" "${others}" "${data}")
run("${WORK}/Scripts/check-abi" --renew "${library}")
run("${WORK}/Scripts/check-symbols" --renew "${library}")
expect_of_both("" "")

make(1.0 "${virtuals}" "int second();" "${data}")
expect_of_both("${breaks}" "-${thing}::third\\(\\)\n${told}")
make(1.0 "${virtuals}" "int second(); int third(int);" "${data}")
expect_of_both("${breaks}" "-${thing}::third\\(\\)\n\\+${thing}::third\\(int\\)\n${told}")
make(1.0 "${virtuals}" "${others}" "long count = 0; int more = 0;")
expect_of_both("${breaks}" "")
make(1.0 "virtual int fourth(); ${virtuals}" "${others}" "${data}")
expect_of_both("${breaks}" "\\+${thing}::fourth\\(\\)\n${told}")
make(2.0 "virtual int fourth(); ${virtuals}" "${others}" "${data}")
expect(check-abi "")
make(1.0 "${virtuals}" "${others} int fourth();" "${data}")
expect_of_both("${grows}" "\\+${thing}::fourth\\(\\)\n${told}")
make(1.1 "${virtuals}" "${others} int fourth();" "${data}")
expect(check-abi "")
file(REMOVE_RECURSE "${WORK}")

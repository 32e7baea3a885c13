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

function(expect script code message)
    execute_process(COMMAND "${WORK}/Scripts/${script}" "${library}"
                    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT result EQUAL code OR NOT "${output}${errors}" MATCHES "${message}")
        message(FATAL_ERROR "${script} ended with ${result} and wrote\n${output}${errors}\nand not ${message}")
    endif()
endfunction()

set(sound "^$")
set(breaks "programs that were linked to 1.0 break")
make(1.0 "virtual int first();" "int second(); int third();" "int count = 0;")
run("${WORK}/Scripts/check-abi" --renew "${library}")
run("${WORK}/Scripts/check-symbols" --renew "${library}")
expect(check-abi 0 "${sound}")
expect(check-symbols 0 "${sound}")

make(1.0 "virtual int first();" "int second();" "int count = 0;")
expect(check-abi 1 "${breaks}")
expect(check-symbols 1 "^-Ovra::Geo::Thing::third\\(\\)\n")

make(1.0 "virtual int first();" "int second(); int third(int);" "int count = 0;")
expect(check-abi 1 "${breaks}")
expect(check-symbols 1 "^-Ovra::Geo::Thing::third\\(\\)\n\\+Ovra::Geo::Thing::third\\(int\\)\n")

make(1.0 "virtual int first();" "int second(); int third();" "long count = 0; int more = 0;")
expect(check-abi 1 "${breaks}")
expect(check-symbols 0 "${sound}")

make(1.0 "virtual int fourth(); virtual int first();" "int second(); int third();" "int count = 0;")
expect(check-abi 1 "${breaks}")
make(2.0 "virtual int fourth(); virtual int first();" "int second(); int third();" "int count = 0;")
expect(check-abi 0 "${sound}")

make(1.0 "virtual int first();" "int second(); int third(); int fourth();" "int count = 0;")
expect(check-abi 1 "the minor number must rise")
expect(check-symbols 1 "^\\+Ovra::Geo::Thing::fourth\\(\\)\n")
make(1.1 "virtual int first();" "int second(); int third(); int fourth();" "int count = 0;")
expect(check-abi 0 "${sound}")
file(REMOVE_RECURSE "${WORK}")

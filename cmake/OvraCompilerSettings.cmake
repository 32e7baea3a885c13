# One interface target carries the house's warnings and instrumentation; it is linked privately,
# so that a host that uses an installed or checked-out library inherits none of it.
add_library(OvraCompilerSettings INTERFACE)
target_compile_options(
    OvraCompilerSettings
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wshadow
              -Wconversion
              -Wsign-conversion
              -Wold-style-cast
              -Wnon-virtual-dtor
              -Woverloaded-virtual
              -Wcast-qual
              -Wformat=2
              -Wnull-dereference
              -Wundef
              $<$<BOOL:${OVRA_WARNINGS_AS_ERRORS}>:-Werror>)
target_compile_definitions(OvraCompilerSettings INTERFACE QT_NO_CAST_FROM_BYTEARRAY)
# A product that is rounded on the one side alone leaves noise where parallel vectors have a cross product of
# zero; GCC makes such code wherever the processor can.
target_compile_options(OvraCompilerSettings INTERFACE -ffp-contract=off)

if(OVRA_SANITIZE)
    target_compile_options(OvraCompilerSettings INTERFACE -fsanitize=${OVRA_SANITIZE}
                                                          -fno-omit-frame-pointer
                                                          -fno-sanitize-recover=all)
    target_link_options(OvraCompilerSettings INTERFACE -fsanitize=${OVRA_SANITIZE})
endif()

if(OVRA_COVERAGE)
    target_compile_options(OvraCompilerSettings INTERFACE --coverage)
    target_compile_definitions(OvraCompilerSettings INTERFACE OVRA_COVERAGE)
    target_link_options(OvraCompilerSettings INTERFACE --coverage)
endif()

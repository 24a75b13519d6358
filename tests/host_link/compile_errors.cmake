# Each case is a statement that must compile, and the same with a mistake that must not: then the compiler's message
# has to name the key or layout, the place, and the reason.
#
#     cmake -DCOMPILER=g++ -DINCLUDE=<source folder> -DWORK=<build folder> -P compile_errors.cmake

set(head [[
#include "host_link/request.hpp"
#include "record_output/write_record.hpp"
#include <vector>
using namespace velm;
void f(OutputChannel& out, std::int32_t& integer, float& real, Text<40>& text, std::vector<float>& series) {
    (void)out, (void)integer, (void)real, (void)text, (void)series;
]])
set(all_right "")
set(failures 0)

function(compile name statements status messages)
    file(WRITE ${WORK}/${name}.cpp "${head}${statements}\n}\n")
    execute_process(COMMAND ${COMPILER} -std=c++20 -fsyntax-only -I${INCLUDE} ${WORK}/${name}.cpp
                    RESULT_VARIABLE result ERROR_VARIABLE output OUTPUT_QUIET)
    set(${status} ${result} PARENT_SCOPE)
    set(${messages} "${output}" PARENT_SCOPE)
endfunction()

# mistake(NAME right wrong messages...): each message is a regular expression
macro(mistake name right wrong)
    string(APPEND all_right "${right}\n")
    compile(${name} "${wrong}" status messages)
    if(status EQUAL 0)
        message("${name}: compiled, but must not: ${wrong}")
        math(EXPR failures "${failures} + 1")
    endif()
    foreach(expected ${ARGN})
        if(NOT messages MATCHES "${expected}")
            message("${name}: '${expected}' is not in the compiler's message:\n${messages}")
            math(EXPR failures "${failures} + 1")
        endif()
    endforeach()
endmacro()

mistake(unknown_key "request<\"GNUMSEG\">(integer);" "request<\"GNUMSEQ\">(integer);"
        "the host has no such key" "GNUMSEQ|71, 78, 85, 77, 83, 69, 81")
mistake(too_few_values "request<\"GSEGNAME\">(1, text);" "request<\"GSEGNAME\">(text);"
        "this key travels with another number of values" "2, 1>")
mistake(wrong_kind "request<\"GVOLUME\">(1, real);" "request<\"GVOLUME\">(1, integer);"
        "this value does not fit the key" "ValueOfKey<.*2,.*real.*int>")
mistake(wrong_text_length "request<\"GSEGNAME\">(1, text);" "Text<30> name{}; request<\"GSEGNAME\">(1, name);"
        "this value does not fit the key" "ValueOfKey<.*2,.*text, 40, .*array<char, 30>")
mistake(value_and_index_exchanged "request<\"GIQOPT\">(integer, 1);" "request<\"GIQOPT\">(1, integer);"
        "this value does not fit the key" "ValueOfKey<.*1,.*out, .*integer, 0, int>")
mistake(series_as_one_real "request<\"GALLLOADFUNC\">(1, 1, series, series);"
        "request<\"GALLLOADFUNC\">(1, 1, series, real);" "this value does not fit the key"
        "ValueOfKey<.*4,.*series, 0, float>")
mistake(layout_with_a_mistake "write_record<\"(I5,15x,'Number')\">(out, integer);"
        "write_record<\"(I5,Q15,'Number')\">(out, integer);" "this layout has a mistake" "unknown_descriptor, 4>")
mistake(layout_and_kind "write_record<\"(I5,F10.4)\">(out, integer, real);"
        "write_record<\"(I5,F10.4)\">(out, integer, integer);" "this descriptor takes a real" "4, 2, .*real, int>")
mistake(layout_and_count "write_record<\"(2F14.6)\">(out, real, real);" "write_record<\"(2F14.6)\">(out, real);"
        "the layout takes another number of values" "2, 1>")
mistake(double_for_real "write_record<\"(F10.4)\">(out, 1.5F);" "write_record<\"(F10.4)\">(out, 1.5);"
        "this descriptor takes a real" "1, 1, .*real, double>")
mistake(free_bool "write_free_record(out, 1);" "write_free_record(out, true);" "render_free_value")

compile(all_right "${all_right}" status messages)
if(NOT status EQUAL 0)
    message("what is right does not compile:\n${messages}")
    math(EXPR failures "${failures} + 1")
endif()
if(failures)
    message(FATAL_ERROR "${failures} failures")
endif()

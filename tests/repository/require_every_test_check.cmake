# Run by CTest with `cmake -DMODULE=… -DFOLDER=… -P`: configures a small project with one test
# source that is listed, and the same with one that is not.
file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}/tests/deep")
file(WRITE "${FOLDER}/CMakeLists.txt" "
    cmake_minimum_required(VERSION 3.25)
    project(sample LANGUAGES NONE)
    add_subdirectory(tests)\n")
file(WRITE "${FOLDER}/tests/CMakeLists.txt" "
    add_custom_target(listed SOURCES deep/listed_test.cpp)
    include(${MODULE})
    gruk_require_every_test(\${CMAKE_CURRENT_SOURCE_DIR})\n")
file(WRITE "${FOLDER}/tests/deep/listed_test.cpp" "")

function(configure result output)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -S "${FOLDER}" -B "${FOLDER}/build"
        RESULT_VARIABLE code OUTPUT_QUIET ERROR_VARIABLE text)
    set(${result} ${code} PARENT_SCOPE)
    set(${output} "${text}" PARENT_SCOPE)
endfunction()

configure(code text)
if(NOT code EQUAL 0)
    message(FATAL_ERROR "A tree whose tests are all listed does not configure: ${text}")
endif()

file(WRITE "${FOLDER}/tests/deep/forgotten_test.cpp" "")
configure(code text)
if(code EQUAL 0)
    message(FATAL_ERROR "A test source in no target goes unnoticed.")
endif()
if(NOT text MATCHES "tests/deep/forgotten_test.cpp")
    message(FATAL_ERROR "The message does not name the file: ${text}")
endif()
file(REMOVE_RECURSE "${FOLDER}")

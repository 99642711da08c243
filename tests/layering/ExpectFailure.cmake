# Runs a check that has to fail with one of its own messages.
#
#     cmake -DMESSAGE=<expression> -P ExpectFailure.cmake -- <program> <argument>...
cmake_minimum_required(VERSION 3.25)
set(command "")
set(seen FALSE)
math(EXPR last "${CMAKE_ARGC} - 1")
foreach(index RANGE ${last})
    if(seen)
        list(APPEND command "${CMAKE_ARGV${index}}")
    elseif(CMAKE_ARGV${index} STREQUAL "--")
        set(seen TRUE)
    endif()
endforeach()
execute_process(COMMAND ${command} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result EQUAL 0)
    message(FATAL_ERROR "The check passed what it should have caught. It printed:\n${output}")
endif()
# CMake breaks the lines of an error's text.
string(REGEX REPLACE "[ \n]+" " " output "${output}")
if(NOT output MATCHES "${MESSAGE}")
    message(FATAL_ERROR "The check failed for another reason than \"${MESSAGE}\":\n${output}")
endif()

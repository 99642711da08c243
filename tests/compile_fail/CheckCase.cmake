# Compiles CASE once as it stands, which has to succeed, and once with KIVORA_MISTAKE defined, which has to fail with
# DIAGNOSTIC. Only the compiler's front end runs.
cmake_minimum_required(VERSION 3.25)
set(ENV{LC_ALL} C)
set(command ${COMPILER} -std=c++20 -fsyntax-only -I${SOURCES} ${OPTIONS} ${CASE})

execute_process(COMMAND ${command} RESULT_VARIABLE result ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "Without the mistake it should compile:\n${output}")
endif()
execute_process(COMMAND ${command} -DKIVORA_MISTAKE RESULT_VARIABLE result ERROR_VARIABLE output)
if(result EQUAL 0)
    message(FATAL_ERROR "The mistake compiles.")
endif()
if(NOT output MATCHES "${DIAGNOSTIC}")
    message(FATAL_ERROR "It failed for another reason than \"${DIAGNOSTIC}\":\n${output}")
endif()

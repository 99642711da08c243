find_package(GTest REQUIRED)
include(GoogleTest)

# kivora_test(<name> SOURCES ... [LEAVES ...] [LINKS ...] [LABELS label] [TIMEOUT s]): a GoogleTest program on the
# project's own main, which fails a test on an unexpected log line. Each test in it is one of ctest's. GoogleTest's
# discovery fails a program that holds no test. Windows are Qt's offscreen ones; a program labelled x11 gets the display
# that DISPLAY names.
function(kivora_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "SOURCES;LEAVES;LINKS;LABELS")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set(platform offscreen)
    if(x11 IN_LIST arg_LABELS)
        set(platform xcb)
    endif()
    # gtest_discover_tests() passes on neither an empty value, taking the next property's name for it, nor a list.
    list(LENGTH arg_LABELS count)
    if(count GREATER 1)
        message(FATAL_ERROR "${name}: a test program has one label at most, not ${arg_LABELS}")
    endif()
    set(labels "")
    if(arg_LABELS)
        set(labels LABELS ${arg_LABELS})
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE kivora_warnings kivora_test_support ${arg_LINKS})
    foreach(leaf IN LISTS arg_LEAVES)
        kivora_leaf_target(target ${leaf})
        target_link_libraries(${name} PRIVATE ${target})
    endforeach()
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${arg_TIMEOUT} ENVIRONMENT QT_QPA_PLATFORM=${platform} ${labels})
endfunction()

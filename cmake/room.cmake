# grolof_room(NAME SOURCES ... [USES ...]): one folder under src/ as a library. USES names the rooms
# whose headers it includes, and links them; the include path is all of src/, so a test compares the
# two.
function(grolof_room name)
    cmake_parse_arguments(ROOM "" "" "SOURCES;USES" ${ARGN})
    add_library(grolof_${name} STATIC ${ROOM_SOURCES})
    target_include_directories(grolof_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    foreach(used IN LISTS ROOM_USES)
        target_link_libraries(grolof_${name} PUBLIC grolof_${used})
    endforeach()
endfunction()

# grolof_test(ROOM SOURCES ... [USES ...] [LONG FILTER]): the unit tests of a room, one ctest entry a
# test. Where tests/CMakeLists.txt says `instrumented` they are one entry for all; what LONG filters
# is left out where lines are counted, because it runs the same lines thousands of times.
function(grolof_test room)
    cmake_parse_arguments(TEST "" "LONG" "SOURCES;USES" ${ARGN})
    add_executable(test_${room} ${TEST_SOURCES})
    target_include_directories(test_${room} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(test_${room} PRIVATE grolof_${room} GTest::gmock_main)
    foreach(used IN LISTS TEST_USES)
        target_link_libraries(test_${room} PRIVATE grolof_${used})
    endforeach()
    target_compile_definitions(test_${room} PRIVATE
        EXAMPLES_DIRECTORY="${PROJECT_SOURCE_DIR}/examples"
        TEST_DATA_DIRECTORY="${PROJECT_SOURCE_DIR}/tests/${room}")
    target_precompile_headers(test_${room} REUSE_FROM test_headers)
    if(GROLOF_COVERAGE AND TEST_LONG)
        add_test(NAME ${room} COMMAND test_${room} --gtest_filter=-${TEST_LONG})
    elseif(instrumented)
        add_test(NAME ${room} COMMAND test_${room})
    else()
        gtest_discover_tests(test_${room} TEST_PREFIX ${room}. DISCOVERY_TIMEOUT 60)
    endif()
endfunction()

# grolof_link(TARGET LINK): installs a symbolic link, relative, as DESTDIR wants it.
function(grolof_link target link)
    install(CODE "
        set(link \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${link}\")
        message(STATUS \"Installing: \${link}\")
        file(CREATE_LINK ${target} \"\${link}\" SYMBOLIC)")
endfunction()

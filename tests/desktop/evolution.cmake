# The program on the desktop's real calendar service; evolution/service.py says how it is started.
set(evolution "${CMAKE_CURRENT_SOURCE_DIR}/evolution")

# evolution_test(SCRIPT CLASS test …): tests of a class in a script, each known to ctest.
function(evolution_test script class)
  foreach(test ${ARGN})
    set(name "evolution.${class}.${test}")
    add_test(NAME "${name}" COMMAND /usr/bin/python3 -B "${evolution}/${script}" "${class}.${test}")
    set_tests_properties("${name}" PROPERTIES TIMEOUT 120 LABELS desktop ENVIRONMENT
                         "ORVANE_BUILD=${CMAKE_BINARY_DIR};PYTHONPATH=${CMAKE_CURRENT_SOURCE_DIR}")
  endforeach()
endfunction()

evolution_test(service_test.py Service tells_what_was_created_changed_and_removed
               has_the_calendars_that_lay_in_its_folders renames_and_removes_calendars
               is_started_by_the_bus_and_comes_back_when_it_was_killed ends_with_its_session)

# What the program would publish, without a desktop to show it on.
add_executable(agenda_probe evolution/agenda_probe.cpp)
target_link_libraries(agenda_probe PRIVATE orvane_logic orvane_common orvane_calendars
                      orvane_defaults orvane_dump orvane_locale orvane_mainloop)
target_include_directories(agenda_probe PRIVATE "${CMAKE_SOURCE_DIR}/tools")
set_target_properties(agenda_probe PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
add_dependencies(agenda_probe orvane-reader)

evolution_test(cases_test.py Cases are_a_hundred_that_differ_from_one_another)

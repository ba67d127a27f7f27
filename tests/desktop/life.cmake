# How the program's life begins and ends.

# life_test(SCRIPT CLASS test …): tests of a class in a script, each known to ctest.
function(life_test script class)
  foreach(test ${ARGN})
    set(name "life.${class}.${test}")
    add_test(NAME "${name}"
             COMMAND /usr/bin/python3 -B "${CMAKE_CURRENT_SOURCE_DIR}/${script}" "${class}.${test}")
    set_tests_properties("${name}" PROPERTIES TIMEOUT 180 LABELS desktop ENVIRONMENT
                         "ORVANE_BUILD=${CMAKE_BINARY_DIR}")
  endforeach()
endfunction()

life_test(start_test.py Start without_a_desktop_ends_in_one_line
          where_no_display_is_served_ends_in_one_line where_no_display_answers_ends_in_one_line
          with_a_question_answers_it with_any_other_argument_ends_in_one_line)

add_library(hanging_disk MODULE hanging_disk.c)
set_target_properties(hanging_disk PROPERTIES PREFIX "" SUFFIX ".so" C_STANDARD 11 C_EXTENSIONS ON
                      LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
life_test(end_test.py EndOnAHangingDisk comes_all_the_same)

# What measures time runs alone.
life_test(end_test.py End after_a_termination_is_quick_and_saves after_an_interrupt_is_quick_and_saves
          after_a_call_is_quick_and_saves)
foreach(test after_a_termination_is_quick_and_saves after_an_interrupt_is_quick_and_saves
        after_a_call_is_quick_and_saves)
  set_tests_properties(life.End.${test} PROPERTIES RUN_SERIAL ON ENVIRONMENT
                       "ORVANE_BUILD=${CMAKE_BINARY_DIR};ORVANE_END_SECONDS=${end_seconds}")
endforeach()

if(TARGET orvane-settings)
  life_test(instance_test.py Instance is_one_without_a_bus
            is_one_where_the_bus_is_too_slow_for_the_second
            is_one_where_the_bus_was_too_slow_for_the_first
            is_started_by_the_bus_and_opens_nothing is_started_by_the_bus_for_an_action)
endif()

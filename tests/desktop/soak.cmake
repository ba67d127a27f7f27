# What goes on for as long as is wished: short in an ordinary build, longer under the sanitizers, which
# is what the whole program is tried by, and as long as ORVANE_LONG_SECONDS says for ./test --long.
set(soak_seconds 10)
if(ORVANE_SANITIZE)
  set(soak_seconds 30)
endif()

# soak_test(NAME SCRIPT TEST SECONDS)
function(soak_test name script test seconds)
  add_test(NAME ${name}
           COMMAND /usr/bin/python3 -B "${CMAKE_CURRENT_SOURCE_DIR}/${script}" ${test})
  set_tests_properties(${name} PROPERTIES TIMEOUT 1500 LABELS "desktop;soak" ENVIRONMENT
                       "ORVANE_BUILD=${CMAKE_BINARY_DIR};ORVANE_SOAK_SECONDS=${seconds}")
endfunction()

soak_test(soak.Random.runs_end_well_on_wayland random_run_test.py Random.runs_end_well_on_wayland
          ${soak_seconds})
soak_test(soak.Random.runs_end_well_on_x11 random_run_test.py Random.runs_end_well_on_x11
          ${soak_seconds})
math(EXPR soak_seconds "2 * ${soak_seconds} - 10")
soak_test(sway.Soak.changes_for_long_leave_the_board_and_the_memory_as_they_were sway_soak_test.py
          Soak.changes_for_long_leave_the_board_and_the_memory_as_they_were ${soak_seconds})

# The program under the eyes of strace.
foreach(test Day.leaves_no_trace_on_wayland Day.leaves_no_trace_on_x11
        Watching.finds_what_another_program_does)
  add_test(NAME trace.${test} COMMAND /usr/bin/python3 -B
           "${CMAKE_CURRENT_SOURCE_DIR}/trace_test.py" ${test})
  set_tests_properties(trace.${test} PROPERTIES TIMEOUT 300 LABELS desktop ENVIRONMENT
                       "ORVANE_BUILD=${CMAKE_BINARY_DIR}")
endforeach()
foreach(test let_pass_what_is_the_programs_own find_everything_else)
  add_test(NAME trace.TraceRules.${test} COMMAND /usr/bin/python3 -B
           "${CMAKE_CURRENT_SOURCE_DIR}/trace_rules_test.py" TraceRules.${test})
endforeach()

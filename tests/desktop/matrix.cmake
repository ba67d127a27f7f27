# The program on real desktops, one row after the other; what the rows have in common is said in
# matrix/row.py and matrix/checks.py.
set(matrix "${CMAKE_CURRENT_SOURCE_DIR}/matrix")
set(matrix_environment "ORVANE_BUILD=${CMAKE_BINARY_DIR}"
    "PYTHONPATH=${CMAKE_CURRENT_SOURCE_DIR}:${matrix}")

# matrix_row(NAME FILE [LABEL …]): a row of a file. All rows carry the label `matrix`; those with
# the label `desktop` too are part of every run of the tests.
function(matrix_row name file)
  add_test(NAME "matrix.${name}" COMMAND /usr/bin/python3 -B "${matrix}/${file}" "${name}")
  set_tests_properties("matrix.${name}" PROPERTIES TIMEOUT 450 LABELS "matrix;${ARGN}"
                       ENVIRONMENT "${matrix_environment}")
endfunction()

if(ORVANE_X11)
  add_executable(x11_client x11_client.cpp)
  target_link_libraries(x11_client PRIVATE orvane_common PkgConfig::ORVANE_X11_TEST)
  set_target_properties(x11_client PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  matrix_row(xvfb x11_rows.py desktop)
  matrix_row(xfwm4-xfdesktop x11_rows.py desktop)
  matrix_row(xfwm4-xfdesktop-composited x11_rows.py desktop)
  foreach(row xfwm4-xfdesktop-two-screens openbox openbox-picom openbox-pcmanfm i3)
    matrix_row(${row} x11_rows.py)
  endforeach()
  foreach(row marco-caja marco-caja-composited muffin-nemo kwin-x11)
    matrix_row(${row} x11_shell_rows.py)
  endforeach()
  matrix_row(kwin-x11-blur blur_rows.py)
  matrix_row(managers-replaced x11_succession_rows.py)
  foreach(test that_are_renamed_are_others that_are_renamed_keep_their_boards
               that_show_the_same_have_one_board that_stand_upright
               that_are_none_for_a_while of_one_pixel of_one_pixel_alone
               of_sixteen_thousand_pixels)
    add_test(NAME "x11.Monitors.${test}" COMMAND /usr/bin/python3 -B
             "${CMAKE_CURRENT_SOURCE_DIR}/x11_monitors_test.py" "Monitors.${test}")
    set_tests_properties("x11.Monitors.${test}" PROPERTIES TIMEOUT 180 LABELS desktop ENVIRONMENT
                         "${matrix_environment}")
  endforeach()
  foreach(test while_it_is_locked while_another_console_is_shown)
    add_test(NAME "x11.OutOfSight.${test}" COMMAND /usr/bin/python3 -B
             "${CMAKE_CURRENT_SOURCE_DIR}/x11_login_test.py" "OutOfSight.${test}")
    set_tests_properties("x11.OutOfSight.${test}" PROPERTIES TIMEOUT 180 LABELS desktop ENVIRONMENT
                         "${matrix_environment}")
  endforeach()
  foreach(test is_asked_for_as_long_as_it_is_offered is_not_asked_for_where_there_is_no_glass)
    add_test(NAME "x11.Blur.${test}" COMMAND /usr/bin/python3 -B
             "${CMAKE_CURRENT_SOURCE_DIR}/x11_blur_test.py" "Blur.${test}")
    set_tests_properties("x11.Blur.${test}" PROPERTIES TIMEOUT 120 LABELS desktop ENVIRONMENT
                         "${matrix_environment}")
  endforeach()
endif()

# Mutter has no layer shell: the program comes to its Xwayland by itself.
if(ORVANE_X11)
  matrix_row(mutter mutter_rows.py desktop)
  matrix_row(mutter-scaled mutter_rows.py)
  matrix_row(gnome-shell gnome_shell_rows.py)
  matrix_row(gnome-shell-killed gnome_shell_rows.py)
  matrix_row(icons-gnome-shell icon_rows.py)

  add_library(user_unit MODULE user_unit.cpp)
  # It is loaded into a program of the system's, so it must not need a sanitizer's runtime.
  target_link_libraries(user_unit PRIVATE orvane_warnings)
  set_target_properties(user_unit PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY
                        "${CMAKE_BINARY_DIR}/tests")
  # mutter_test(FILE CLASS test …): tests of a class in a file, each known to ctest.
  function(mutter_test file class)
    foreach(test ${ARGN})
      set(name "mutter.${class}.${test}")
      add_test(NAME "${name}" COMMAND /usr/bin/python3 -B "${CMAKE_CURRENT_SOURCE_DIR}/${file}"
                                      "${class}.${test}")
      set_tests_properties("${name}" PROPERTIES TIMEOUT 180 LABELS desktop ENVIRONMENT
                           "${matrix_environment};ORVANE_END_SECONDS=${end_seconds}")
    endforeach()
  endfunction()

  mutter_test(mutter_program_test.py Xwayland is_started_when_the_program_asks_for_it
              shows_a_board_on_every_monitor is_drawn_at_the_scale_that_the_session_sets
              is_drawn_in_points_where_mutter_scales_by_itself
              that_is_killed_is_started_again_for_the_board)
  mutter_test(mutter_loss_test.py Loss is_survived_with_the_agenda_of_the_time
              is_survived_while_the_next_one_has_no_monitor ends_with_the_session)
  # What measures time runs alone.
  set_tests_properties(mutter.Loss.ends_with_the_session PROPERTIES RUN_SERIAL ON)
endif()

if(ORVANE_WAYLAND)
  matrix_row(sway sway_rows.py desktop)
  matrix_row(kwin kwin_rows.py desktop)
  matrix_row(kwin-plasma kwin_rows.py)
  matrix_row(kwin-lock lock_rows.py)
  matrix_row(wayfire wayfire_rows.py)

  # Where it cannot be built, the row on Wayfire is missing.
  pkg_check_modules(ORVANE_WLROOTS IMPORTED_TARGET wlroots>=0.15 wlroots<0.16 egl glesv2 pixman-1
                    wayland-server)
  if(ORVANE_WLROOTS_FOUND)
    add_library(software_gpu MODULE software_gpu.c)
    target_link_libraries(software_gpu PRIVATE PkgConfig::ORVANE_WLROOTS)
    set_target_properties(software_gpu PROPERTIES PREFIX "" SUFFIX ".so" C_STANDARD 11
                          LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  endif()
  matrix_row(icons-plasma icon_rows.py)
  matrix_row(icons-plasma-new-screen icon_rows.py)
endif()

# The checks themselves are tried on a desktop of paper.
foreach(test Checks.pass_a_board_without_faults Checks.fail_each_fault_that_they_are_there_for
        Checks.fail_for_every_title_somewhere
        Checks.are_tried_again_with_the_board_on_one_workspace
        Checks.are_not_made_where_the_desktop_lacks_what_they_take
        Rows.without_their_programs_are_missing_and_fail Rows.whose_desktop_does_not_start_fail)
  add_test(NAME "checks.${test}" COMMAND /usr/bin/python3 -B "${matrix}/checks_test.py" "${test}")
  set_tests_properties("checks.${test}" PROPERTIES TIMEOUT 60 ENVIRONMENT "${matrix_environment}")
endforeach()

# The X11 windows on real servers: Xvfb, with xfwm4 and xfdesktop and without.
find_package(PkgConfig REQUIRED)
pkg_check_modules(ORVANE_X11_TEST REQUIRED IMPORTED_TARGET xcb xcb-damage xcb-xtest)

# A small program around the real windows, with a board that can be read back from a picture.
add_executable(x11_probe x11_probe.cpp x11_block_painter.cpp)
target_link_libraries(x11_probe PRIVATE orvane_logic orvane_common orvane_x11 orvane_mainloop)
target_include_directories(x11_probe PRIVATE "${CMAKE_SOURCE_DIR}/tests")
set_target_properties(x11_probe PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")

add_library(x11_desktop_harness STATIC x11_block_painter.cpp x11_child_process.cpp x11_observer.cpp
            x11_probe_board.cpp x11_program.cpp x11_session.cpp x11_xfce.cpp)
target_link_libraries(x11_desktop_harness PUBLIC orvane_logic orvane_test_common
                      test_paths PkgConfig::ORVANE_X11_TEST)
orvane_take_precompiled_in(orvane_test_headers x11_desktop_harness)
add_dependencies(x11_desktop_harness x11_probe orvane orvane-reader)

orvane_test(NAME x11_desktop_test
  SOURCES x11_bare_test.cpp x11_loss_test.cpp x11_program_test.cpp x11_unseen_test.cpp
          x11_xfce_test.cpp
  LIBRARIES x11_desktop_harness
  PROPERTIES LABELS desktop)
# What measures time runs alone.
orvane_test(NAME x11_beat_test
  SOURCES x11_beat_test.cpp
  LIBRARIES x11_desktop_harness
  PROPERTIES LABELS desktop RUN_SERIAL TRUE)

# xfce_test(CLASS test …): the program as a part of Xfce, each test known to ctest.
function(xfce_test class)
  foreach(test ${ARGN})
    set(name "xfce.${class}.${test}")
    add_test(NAME "${name}"
             COMMAND /usr/bin/python3 -B "${CMAKE_CURRENT_SOURCE_DIR}/xfce_shell_test.py"
                     "${class}.${test}")
    set_tests_properties("${name}" PROPERTIES TIMEOUT 180 LABELS desktop ENVIRONMENT
                         "ORVANE_BUILD=${CMAKE_BINARY_DIR}")
  endforeach()
endfunction()

xfce_test(HotKey toggles_focus_mode)
xfce_test(Instance is_one_and_activated_by_a_second_start
          is_left_alone_by_a_second_start_with_the_session)
xfce_test(Actions do_what_they_are_called)
xfce_test(Icons are_hidden_while_focus_mode_is_on keep_the_style_of_the_user)
# Desktops whose icons are hidden by GSettings, with its real store. What measures time runs alone.
foreach(test has_what_was_set_when_the_program_ends that_hangs_holds_up_nobody)
  add_test(NAME "settings_store.Store.${test}" COMMAND /usr/bin/python3 -B
           "${CMAKE_CURRENT_SOURCE_DIR}/settings_store_test.py" "Store.${test}")
  set_tests_properties("settings_store.Store.${test}" PROPERTIES TIMEOUT 180 LABELS desktop
                       ENVIRONMENT "ORVANE_BUILD=${CMAKE_BINARY_DIR};ORVANE_END_SECONDS=${end_seconds}")
endforeach()
set_tests_properties(settings_store.Store.that_hangs_holds_up_nobody PROPERTIES RUN_SERIAL ON)

xfce_test(StatusItem opens_its_menu comes_back_with_the_panel asks_nobody_while_nobody_watches
          has_an_entry_that_reads_the_calendars_at_once)

# settings_program_test(CLASS test …): the program of the settings window beside the board's.
function(settings_program_test class)
  foreach(test ${ARGN})
    set(name "settings_program.${class}.${test}")
    add_test(NAME "${name}"
             COMMAND /usr/bin/python3 -B "${CMAKE_CURRENT_SOURCE_DIR}/settings_program_test.py"
                     "${class}.${test}")
    set_tests_properties("${name}" PROPERTIES TIMEOUT 600 LABELS desktop ENVIRONMENT
                         "ORVANE_BUILD=${CMAKE_BINARY_DIR}")
  endforeach()
endfunction()

if(TARGET orvane-settings)
  xfce_test(StatusItem has_an_entry_that_opens_the_settings)
  settings_program_test(Window comes_and_goes_without_the_board killed_it_is_opened_anew
                        ends_with_a_board_that_is_killed
                        stopped_it_holds_up_nobody opened_edited_and_closed_a_hundred_times)
  # Only the program as it is meant to be is quick; and what measures time runs alone.
  if(NOT ORVANE_SANITIZE)
    settings_program_test(Speed is_there_soon_and_again_at_once is_drawn_soon_where_it_is_read_aloud)
    set_tests_properties("settings_program.Speed.is_there_soon_and_again_at_once"
                         "settings_program.Speed.is_drawn_soon_where_it_is_read_aloud"
                         PROPERTIES RUN_SERIAL TRUE)
  endif()
endif()

# What the sway tests start: a probe around the adapter, and neighbours of its board.
add_executable(wayland_probe wayland_probe.cpp)
target_link_libraries(wayland_probe PRIVATE orvane_common orvane_mainloop orvane_wayland)
target_include_directories(wayland_probe PRIVATE "${CMAKE_SOURCE_DIR}/tests")

find_package(PkgConfig REQUIRED)
pkg_get_variable(WAYLAND_SCANNER wayland-scanner wayland_scanner)
set(input_protocols "")
foreach(name wlr-virtual-pointer-unstable-v1 wlr-foreign-toplevel-management-unstable-v1
        kwin-fake-input)
  set(protocol "${CMAKE_CURRENT_SOURCE_DIR}/protocol/${name}.xml")
  set(base "${CMAKE_CURRENT_BINARY_DIR}/protocol/${name}")
  add_custom_command(
    OUTPUT "${base}-client.h" "${base}.c"
    COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_CURRENT_BINARY_DIR}/protocol"
    COMMAND ${WAYLAND_SCANNER} client-header "${protocol}" "${base}-client.h"
    COMMAND ${WAYLAND_SCANNER} private-code "${protocol}" "${base}.c"
    DEPENDS "${protocol}"
    VERBATIM)
  list(APPEND input_protocols "${base}.c" "${base}-client.h")
endforeach()
add_library(desktop_protocols STATIC ${input_protocols})
target_include_directories(desktop_protocols SYSTEM PUBLIC "${CMAKE_CURRENT_BINARY_DIR}/protocol")
target_link_libraries(desktop_protocols PUBLIC orvane_wayland_protocols)

add_executable(sway_client sway_client.cpp)
target_link_libraries(sway_client PRIVATE orvane_common desktop_protocols)
add_executable(kwin_input kwin_input.cpp)
target_link_libraries(kwin_input PRIVATE orvane_common desktop_protocols)
add_executable(wlr_input wlr_input.cpp)
target_link_libraries(wlr_input PRIVATE orvane_common desktop_protocols)
add_executable(wlr_windows wlr_windows.cpp)
target_link_libraries(wlr_windows PRIVATE orvane_common desktop_protocols)
set_target_properties(wayland_probe sway_client kwin_input wlr_input wlr_windows PROPERTIES
                      RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")

# sway_test(SCRIPT CLASS test …): tests of a class in a script, each known to ctest. What measures
# time runs alone.
function(sway_test script class)
  foreach(test ${ARGN})
    set(name "sway.${class}.${test}")
    add_test(NAME "${name}"
             COMMAND /usr/bin/python3 -B "${CMAKE_CURRENT_SOURCE_DIR}/${script}" "${class}.${test}")
    set_tests_properties("${name}" PROPERTIES TIMEOUT 120 LABELS desktop ENVIRONMENT
                         "ORVANE_BUILD=${CMAKE_BINARY_DIR}")
    if(class MATCHES "Seconds|Changes")
      set_tests_properties("${name}" PROPERTIES RUN_SERIAL ON)
    endif()
  endforeach()
endfunction()

set(script sway_probe_test.py)
sway_test(${script} Standing on_the_main_screen_alone on_every_screen moves_with_the_main_screen
          follows_a_changed_scale covers_only_what_is_drawn)
sway_test(${script} Neighbours clicks_go_through
          clicks_do_not_go_through_a_board_that_takes_them windows_cover_it
          windows_do_not_cover_a_raised_board stands_above_the_background)
sway_test(${script} Outputs come_and_go_beside_the_board take_the_board_along none_for_a_while)
sway_test(${script} Changes are_shown_at_once to_nothing_take_the_surface_away_and_back)
sway_test(${script} End leaves_nothing lost_compositor_is_told_in_one_sentence
          no_compositor_is_told_in_one_sentence)
sway_test(${script} Seconds never_skip_nor_repeat are_drawn_on_the_second change_only_their_digits
          agree_with_the_clock are_not_drawn_while_nothing_is_shown)

set(script sway_program_test.py)
sway_test(${script} Program stands_on_the_main_screen stands_on_every_screen
          stands_on_the_selected_screen stands_on_the_main_screen_while_the_selected_one_is_away
          sleeps_while_there_are_no_screens_and_comes_back
          clicks_go_through windows_cover_it leaves_nothing)
sway_test(${script} ProgramSeconds never_skip_nor_repeat are_drawn_on_the_second are_slept_through
          wake_it_once_each change_a_few_thousand_pixels show_a_new_calendar_within_two)

set(script sway_sight_test.py)
sway_test(${script} OutOfSight behind_a_window_that_fills_the_output
          behind_the_lock_screen)
sway_test(${script} Modes that_stand_upright of_one_pixel of_sixteen_thousand_pixels)
sway_test(${script} Zone that_is_another_one_shows_its_day_at_once)
sway_test(${script} Scales between_one_and_two_are_drawn_as_two)

sway_test(sway_soak_test.py Storm of_output_changes_leaves_the_boards_where_they_were)

# Some of them wait as long as the program does, or begin again and again.
set(script sway_loss_test.py)
sway_test(${script} Loss is_survived_with_the_agenda_of_the_time
          is_survived_while_it_stands_on_another_screen is_survived_twenty_times_in_a_row
          ends_with_the_session ends_after_a_minute ends_at_once_when_asked_to
          ends_at_once_when_asked_to_while_a_compositor_is_silent)
set_tests_properties(sway.Loss.is_survived_twenty_times_in_a_row sway.Loss.ends_after_a_minute
                     PROPERTIES TIMEOUT 300)
set_tests_properties(
  sway.Loss.ends_with_the_session sway.Loss.ends_at_once_when_asked_to
  sway.Loss.ends_at_once_when_asked_to_while_a_compositor_is_silent PROPERTIES RUN_SERIAL ON
  ENVIRONMENT "ORVANE_BUILD=${CMAKE_BINARY_DIR};ORVANE_END_SECONDS=${end_seconds}")

sway_test(picture_test.py Pictures are_read_from_a_file are_read_from_rows_with_padding are_cut_and_joined
          are_kept_as_png count_a_color_within_a_rectangle
          tell_where_they_differ)
sway_test(desktop_session_test.py Session starts_programs_that_only_their_owner_can_reach
          starts_reachable_programs_where_they_are leaves_nothing_when_it_is_asked_to_end
          leaves_no_process_when_it_is_killed)

sway_test(sway_tray_test.py Tray opens_its_menu_whose_entries_do_what_they_say
          has_an_entry_that_reads_the_calendars_at_once shows_the_item_until_the_program_ends
          gets_the_item_again_when_it_is_restarted)
if(TARGET orvane-settings)
  sway_test(sway_tray_test.py Tray hands_the_settings_what_lets_them_take_the_focus)
endif()

sway_test(portal_test.py Portal hands_the_key_on is_started_when_the_program_asks_for_it
          may_refuse_the_key may_have_nothing_behind_it may_be_started_anew may_end_the_session)

# The settings window, operated by the names of its controls.

# settings_test(SCRIPT CLASS test …): tests of a class in a script, each known to ctest.
function(settings_test script class)
  string(REGEX REPLACE "_test\\.py$" "" prefix "${script}")
  foreach(test ${ARGN})
    set(name "${prefix}.${class}.${test}")
    add_test(NAME "${name}"
             COMMAND /usr/bin/python3 -B "${CMAKE_CURRENT_SOURCE_DIR}/${script}" "${class}.${test}")
    set_tests_properties("${name}" PROPERTIES TIMEOUT 480 LABELS desktop ENVIRONMENT
                         "ORVANE_BUILD=${CMAKE_BINARY_DIR}")
  endforeach()
endfunction()

if(ORVANE_X11)
  set(script settings_window_test.py)
  settings_test(${script} Names are_those_of_the_controls_and_no_others
                are_reached_in_order_by_the_keyboard are_stepped_through_tab_by_tab have_letters)
  settings_test(${script} Sources are_chosen_and_all_again are_chosen_by_screen_readers
                come_and_go)
  settings_test(${script} Display is_chosen toggles_are_stored shows_what_was_changed_elsewhere
                springs_back_where_login_items_cannot_be_written)
  settings_test(${script} SmartNext toggles_are_stored words_are_stored_as_they_are_typed)
  settings_test(${script} Style is_seen_on_the_board strength_is_seen_on_the_board
                color_is_seen_on_the_board)
  settings_test(${script} Looks are_those_that_the_desktop_prefers)
  settings_test(settings_restart_test.py Restart keeps_every_setting)
  settings_test(settings_effects_test.py Effects of_the_chosen_calendars of_the_chosen_lists
                of_what_drives_next_up of_days_that_count of_ignored_words of_urgency of_focus_mode
                of_spaces after_a_restart)
  settings_test(settings_left_test.py Updates do_not_fight_a_slider_under_the_pointer
                leave_what_is_selected leave_a_list_where_it_is_scrolled
                end_with_a_slider_under_the_pointer)
  settings_test(settings_left_test.py Again it_is_scrolled_as_it_was_after_its_program_ended
                it_is_scrolled_and_stands_as_it_did_before_it_crashed)
  settings_test(settings_left_test.py Window closes_by_return_and_opens_as_it_was
                leaves_return_to_a_list_that_is_open leaves_return_to_a_button
                stands_in_the_middle_and_then_where_it_was_put
                has_the_size_of_its_form_and_comes_back_from_being_minimized)
  settings_test(settings_left_test.py Letters go_to_the_lists reach_the_controls_of_the_other_tabs)
  settings_test(settings_lists_test.py Lists of_five_hundred_open_as_soon_as_those_of_two
                of_five_hundred_scroll_smoothly have_odd_names
                call_what_is_nameless_by_another_name)
  settings_test(settings_missing_test.py Toolkit that_is_missing_is_told_and_the_board_goes_on
                that_is_missing_is_told_on_the_terminal_where_nobody_shows_notifications)
  set(script settings_looks_test.py)
  settings_test(${script} Accent is_the_desktops)
  settings_test(${script} Texts grow_and_everything_is_still_reached)
  settings_test(${script} Direction is_that_of_the_language)
  settings_test(${script} Preview follows_theme_color_and_strength
                follows_a_slider_under_the_pointer_and_is_no_handle_itself)
endif()
if(ORVANE_WAYLAND)
  settings_test(settings_sway_test.py Settings float_in_the_size_of_their_form are_changed_and_kept
                choose_sources_and_all_again choose_the_displays switch_what_there_is_to_switch
                choose_the_color close_and_open_as_they_were)
  settings_test(settings_sway_test.py Texts grow_with_those_of_the_desktop)
endif()

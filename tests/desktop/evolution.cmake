# The program on the desktop's real calendar service; evolution/service.py says how it is started.
set(evolution "${CMAKE_CURRENT_SOURCE_DIR}/evolution")

set(evolution_environment "ORVANE_BUILD=${CMAKE_BINARY_DIR}" "PYTHONPATH=${CMAKE_CURRENT_SOURCE_DIR}")
set(evolution_modifications "")
if(ORVANE_SANITIZE)
  # Everything is slower, and leaks of the service's library are known by their whole stacks.
  list(APPEND evolution_environment "ORVANE_SOON=5")
  set(evolution_modifications
      "ASAN_OPTIONS=string_append::fast_unwind_on_malloc=0:malloc_context_size=14")
endif()

# evolution_test(SCRIPT CLASS test …): tests of a class in a script, each known to ctest.
function(evolution_test script class)
  foreach(test ${ARGN})
    set(name "evolution.${class}.${test}")
    add_test(NAME "${name}" COMMAND /usr/bin/python3 -B "${evolution}/${script}" "${class}.${test}")
    set_tests_properties("${name}" PROPERTIES TIMEOUT 400 LABELS desktop
                         ENVIRONMENT "${evolution_environment}"
                         ENVIRONMENT_MODIFICATION "${evolution_modifications}")
  endforeach()
endfunction()

# What the program would publish, without a desktop to show it on.
add_executable(agenda_probe evolution/agenda_probe.cpp)
target_link_libraries(agenda_probe PRIVATE orvane_logic orvane_common orvane_calendars
                      orvane_defaults orvane_dump orvane_evolution orvane_gio orvane_locale
                      orvane_mainloop)
target_include_directories(agenda_probe PRIVATE "${CMAKE_SOURCE_DIR}/tools")
set_target_properties(agenda_probe PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
add_dependencies(agenda_probe orvane-reader orvane-evolution)

evolution_test(service_test.py Service tells_what_was_created_changed_and_removed
               has_the_calendars_that_lay_in_its_folders renames_and_removes_calendars
               is_started_by_the_bus_and_comes_back_when_it_was_killed ends_with_its_session)
evolution_test(cases_test.py Cases are_a_hundred_that_differ_from_one_another
               are_the_same_agenda_from_either are_told_apart_where_one_is_deliberately_different
               are_the_same_when_they_were_imported are_listed_with_the_folders_and_have_identifiers_of_their_own)
evolution_test(live_test.py Live changes_are_published_within_two_seconds
               changes_are_asked_for_before_the_views_tell_of_them
               a_burst_is_published_in_a_few_steps_at_most
               calendars_come_and_go_and_change_their_names
               lists_come_and_go_and_change_their_names the_end_leaves_nothing)
evolution_test(caldav_test.py Account shows_what_folders_would_and_what_changes_on_the_server
               with_a_wrong_password_leaves_its_neighbours_in_place
               that_never_answers_does_not_hold_up_the_others whose_server_is_gone_shows_what_it_had)
evolution_test(access_test.py Access to_no_calendars_at_all_is_not_refused
               is_denied_to_a_kind_as_long_as_nothing_of_it_can_be_read
               is_given_where_one_of_a_kind_can_be_read is_given_where_a_folder_can_be_read)
evolution_test(failures_test.py Death of_the_factory_is_survived_when_the_bus_starts_it
               of_the_factory_is_survived_when_it_is_started_again of_the_whole_service_is_survived
               while_a_calendar_is_opened_is_survived in_the_middle_of_a_question_is_survived
               at_any_moment_is_survived of_the_bus_leaves_the_folders)
evolution_test(failures_test.py Silence of_the_factory_does_not_hold_up_the_folders
               of_the_registry_does_not_hold_up_the_folders of_the_factory_does_not_hold_up_the_end
               of_the_bus_does_not_hold_up_the_folders)
evolution_test(failures_test.py Calendars may_hold_ten_thousand_events may_go_while_they_are_opened
               may_go_while_they_are_read)
evolution_test(failures_test.py Absence of_the_service_costs_nothing of_the_service_loads_nothing
               of_the_service_is_no_matter_when_it_comes_later
               of_the_factory_is_no_matter_when_it_comes_later ends_when_the_service_is_installed)
if(ORVANE_WAYLAND)
  evolution_test(program_test.py Program draws_its_first_frame_while_the_service_hangs
                 draws_its_first_frame_as_soon_as_without_a_bus
                 keeps_its_beat_while_the_service_hangs
                 keeps_its_beat_while_it_starts_beside_a_service_that_hangs
                 keeps_its_beat_while_a_change_is_read
                 gives_the_memory_back_that_reading_many_took
                 shows_a_new_event_of_an_account_within_two_seconds)
  set_tests_properties(evolution.Program.draws_its_first_frame_as_soon_as_without_a_bus
                       evolution.Program.keeps_its_beat_while_the_service_hangs
                       evolution.Program.keeps_its_beat_while_it_starts_beside_a_service_that_hangs
                       evolution.Program.keeps_its_beat_while_a_change_is_read
                       PROPERTIES RUN_SERIAL ON)
endif()

# Each opens more than a hundred calendars, which is enough for the machine.
set_tests_properties(evolution.Cases.are_the_same_agenda_from_either
                     evolution.Cases.are_told_apart_where_one_is_deliberately_different
                     evolution.Cases.are_the_same_when_they_were_imported
                     evolution.Cases.are_listed_with_the_folders_and_have_identifiers_of_their_own
                     PROPERTIES RESOURCE_LOCK evolution)

# What measures time runs alone.
set_tests_properties(evolution.Live.changes_are_published_within_two_seconds
                     evolution.Absence.of_the_service_costs_nothing PROPERTIES RUN_SERIAL ON)

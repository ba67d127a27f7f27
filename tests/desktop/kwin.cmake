# kwin_test(CLASS test …): tests of a class in kwin_test.py, each known to ctest.
function(kwin_test class)
  foreach(test ${ARGN})
    set(name "kwin.${class}.${test}")
    add_test(NAME "${name}" COMMAND /usr/bin/python3 -B "${CMAKE_CURRENT_SOURCE_DIR}/kwin_test.py"
                                    "${class}.${test}")
    set_tests_properties("${name}" PROPERTIES TIMEOUT 240 LABELS desktop ENVIRONMENT
                         "ORVANE_BUILD=${CMAKE_BINARY_DIR}")
  endforeach()
endfunction()

kwin_test(Scales draw_one_pixel_for_each_of_the_output are_followed_while_running)
kwin_test(Outputs are_in_the_order_of_kwin that_show_the_same_have_one_board come_go_and_turn
          have_nothing_drawn_for_them_while_they_are_off)
kwin_test(OutOfSight behind_windows_that_are_drawn_in_every_frame_or_never)
kwin_test(Loss is_survived for_a_while_does_not_move_the_board_to_an_x_server)
kwin_test(Blur softens_what_lies_behind_the_glass_alone is_off_where_there_is_no_glass
          is_off_where_kwin_does_not_blur)

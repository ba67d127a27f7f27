# Programs that the sway tests start.
add_executable(wayland_probe wayland_probe.cpp)
target_link_libraries(wayland_probe PRIVATE orvane_logic orvane_common orvane_mainloop
                      orvane_wayland)
target_include_directories(wayland_probe PRIVATE "${CMAKE_SOURCE_DIR}/tests")
add_executable(sway_client sway_client.cpp)
target_link_libraries(sway_client PRIVATE orvane_common orvane_wayland_protocols)
set_target_properties(wayland_probe sway_client PROPERTIES RUNTIME_OUTPUT_DIRECTORY
                      "${CMAKE_BINARY_DIR}/tests")

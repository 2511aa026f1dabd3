# The main frame, child frame and commands live in a library so that the tests drive the
# same code as the program; the executable adds only the start-up.
add_library(boreanalyst_shell STATIC
  ${CMAKE_CURRENT_SOURCE_DIR}/DocumentWindow.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/HistoryPanel.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/JobRunner.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/MainFrame.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/MainFrameCommands.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/TraceClipboardBridge.cpp
)
ba_expose_layer(boreanalyst_shell app)
target_link_libraries(boreanalyst_shell PUBLIC boreanalyst_view)
ba_set_warnings(boreanalyst_shell)

add_executable(boreanalyst ${CMAKE_CURRENT_SOURCE_DIR}/main.cpp)
target_link_libraries(boreanalyst PRIVATE boreanalyst_shell)
ba_set_warnings(boreanalyst)

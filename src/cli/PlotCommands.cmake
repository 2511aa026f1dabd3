# plot: renders through the Qt log plot renderer, so it exists only in builds with the GUI;
# so do the PNG files of stc-map.
if(BA_BUILD_GUI)
  target_sources(boreanalyst-cli PRIVATE
    ${CMAKE_CURRENT_SOURCE_DIR}/GuiApplication.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/PlotCommand.cpp
  )
  target_link_libraries(boreanalyst-cli PRIVATE boreanalyst_view)
  target_compile_definitions(boreanalyst-cli PRIVATE BA_CLI_HAS_PLOT=1)
endif()

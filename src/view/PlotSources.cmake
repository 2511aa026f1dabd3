# Log plot renderer sources and the plot files written with it (QPainter, no widgets)
target_sources(boreanalyst_view PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/CoherenceMapPainter.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/LogPlotRenderer.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/PlotCurve.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/PlotFileExport.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/PlotImageTrace.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/PlotLayout.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/PlotText.cpp
)

# Image trace export as an ASCII table.
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/io/ImageExport.cpp
)

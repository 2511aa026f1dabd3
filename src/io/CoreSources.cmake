target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/io/FileIO.cpp
)

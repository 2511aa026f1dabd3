# depth-shift, resample, splice
target_sources(boreanalyst-cli PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/DepthShiftCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ResampleCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/SpliceCommand.cpp
)

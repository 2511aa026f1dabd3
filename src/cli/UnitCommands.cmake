# classify-units, convert-units
target_sources(boreanalyst-cli PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/ClassifyUnitsCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ConvertUnitsCommand.cpp
)

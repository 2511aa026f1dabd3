# The logger raw-data import command.
target_sources(boreanalyst-cli PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/ImportRawDataCommand.cpp
)

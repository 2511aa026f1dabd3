# The logger raw-data import and the sonic processing commands.
target_sources(boreanalyst-cli PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/ImportRawDataCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/SemblanceCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/SonicOptions.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/StcMapCommand.cpp
)

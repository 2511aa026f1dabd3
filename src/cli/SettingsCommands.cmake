# The settings command, and export-image.
target_sources(boreanalyst-cli PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/SettingsCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ExportImageCommand.cpp
)

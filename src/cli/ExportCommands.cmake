# export-las, export-text, export-wellcad
target_sources(boreanalyst-cli PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/ExportFileCommands.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ExportWellCadCommand.cpp
)

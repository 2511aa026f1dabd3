# LAS import sources
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LasColumns.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LasCurveNames.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LasDataParser.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LasHeader.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LasImport.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LasIssues.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LasNumber.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LasReader.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LasText.cpp
)

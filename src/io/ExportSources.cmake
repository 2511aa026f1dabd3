# LAS, text and WellCAD export sources
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/io/Automation.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/AutomationRecorder.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/ExportFileWriter.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/ExportGrid.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/FixedText.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LasExport.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/LineTraceCursor.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/TextExport.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/io/WellCadExport.cpp
)
# The automation backend of the platform: IDispatch on Windows, none elsewhere.
if(WIN32)
  target_sources(boreanalyst_core PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/io/AutomationWin32.cpp)
  target_link_libraries(boreanalyst_core PRIVATE ole32 oleaut32 uuid)
else()
  target_sources(boreanalyst_core PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/io/AutomationUnavailable.cpp)
endif()

# export_tests: LAS, text and WellCAD export, and the number text and trace cursor they use.
ba_add_test_program(export_tests
  ${CMAKE_CURRENT_SOURCE_DIR}/ExportCursorTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ExportFileWriterTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ExportFixedTextTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ExportLasTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ExportTextTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ExportWellCadTest.cpp
)

# las_import_tests: reading LAS files (text, header lines, data) and importing them into a
# document, from small fixtures in data/las/ and from the real-world corpus beside the checkout.
ba_add_test_program(las_import_tests
  ${CMAKE_CURRENT_SOURCE_DIR}/LasCorpusTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/LasHeaderTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/LasImportTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/LasReaderTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/LasTextTest.cpp
)

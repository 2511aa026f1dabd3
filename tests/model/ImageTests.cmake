# Image, sonic and spectrum traces.
ba_add_test_program(image_trace_tests
  ${CMAKE_CURRENT_SOURCE_DIR}/model/ImageClipboardTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/model/ImageDocumentTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/model/ImageTraceRecordTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/model/ImageTraceTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/model/SonicTraceTest.cpp
)
# Drawing geometry of image and sonic traces, and the rules of their property pages.
ba_add_test_program(image_drawing_tests
  ${CMAKE_CURRENT_SOURCE_DIR}/model/ImageDrawingTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/model/ImagePropertiesModelTest.cpp
)

# The settings store (no Qt), and the image export.
ba_add_test_program(settings_tests
  ${CMAKE_CURRENT_SOURCE_DIR}/app/SettingsStoreTest.cpp
)
target_link_libraries(settings_tests PRIVATE nlohmann_json::nlohmann_json)
ba_add_test_program(image_export_tests
  ${CMAKE_CURRENT_SOURCE_DIR}/io/ImageExportTest.cpp
)

# The settings store that processing dialogs remember their values in.
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/app/SettingsStore.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/app/SettingsFileStore.cpp
)
# The registry on Windows; the file store serves everywhere, tests on Windows included.
if(WIN32)
  target_sources(boreanalyst_core PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/app/SettingsRegistryStore.cpp)
  target_link_libraries(boreanalyst_core PRIVATE advapi32)
endif()
target_link_libraries(boreanalyst_core PRIVATE nlohmann_json::nlohmann_json)

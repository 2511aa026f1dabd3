# The model repository: named models and templates kept in an SQLite file beside the program.
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/repository/ModelNameCheck.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/repository/RepositoryDatabase.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/repository/RepositoryPath.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/repository/RepositorySchema.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/repository/RepositoryValues.cpp
)
find_package(SQLite3 REQUIRED)
target_link_libraries(boreanalyst_core PRIVATE SQLite::SQLite3)

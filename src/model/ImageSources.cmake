# Image, sonic and spectrum traces.
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/model/ImageTrace.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/model/ImageDrawing.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/model/ImagePropertiesModel.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/model/SonicTrace.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/model/SpectralTrace.cpp
)

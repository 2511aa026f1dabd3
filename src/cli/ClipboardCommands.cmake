# copy-block, paste-block
target_sources(boreanalyst-cli PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/CopyBlockCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/PasteBlockCommand.cpp
)

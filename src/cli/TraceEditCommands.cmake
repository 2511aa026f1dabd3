# create, edit, filter, despike, clip, cut
target_sources(boreanalyst-cli PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/ClipCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/CreateCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/CutCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/DespikeCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/EditCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/FilterCommand.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/TraceUtilityCommand.cpp
)

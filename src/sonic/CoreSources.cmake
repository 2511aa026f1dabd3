# Sonic waveform logs: logger raw-data import.
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/sonic/MechanicalProperties.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/sonic/RawByteSource.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/sonic/RawDataImport.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/sonic/RawRecordReader.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/sonic/SonicRecord.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/sonic/SonicRow.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/sonic/SonicStationRows.cpp
)

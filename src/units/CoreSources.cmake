# Unit vocabulary and conversion sources
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/units/ConversionFactors.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/units/UnitConversion.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/units/UnitTypes.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/units/UnitVocabulary.cpp
)

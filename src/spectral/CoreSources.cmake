# Spectral gamma processing: summing, count rates, energy calibration.
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/spectral/EnergyCalibration.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/spectral/SpectralDialogModel.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/spectral/SpectrumDisplay.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/spectral/SpectrumSumming.cpp
)

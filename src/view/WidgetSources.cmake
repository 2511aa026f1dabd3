# Widget sources: log plot view, property sheet, dialogs, message boxes
target_sources(boreanalyst_view PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/CoherenceMapView.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/CommonLogsDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/FormulaLogDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/GoToDepthDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ImagePropertiesDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/LogPlotView.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/MechanicalPropertiesDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/MessageBoxSink.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ModelBox.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/ProgressDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/SonicPropertiesDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/SonicVelocityDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/SpectralDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/SpectrumView.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/TracePropertiesDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/TraceUtilityDlg.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/UnitConversionDlg.cpp
)

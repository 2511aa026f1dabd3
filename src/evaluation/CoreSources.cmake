# Formation evaluation: the equation catalogue and formulas, coefficient fitting, the
# common-logs dialog's logic.
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/evaluation/CoefficientFit.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/evaluation/CommonLogs.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/evaluation/EquationCatalogue.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/evaluation/EquationFormulas.cpp
)

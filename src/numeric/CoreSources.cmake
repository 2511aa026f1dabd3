# Numerical toolkit: 1-based arrays, LU, Newton, SVD, least squares, Brent.
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/BrentMinimiser.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/LinearLeastSquares.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/LuDecomposition.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/NewtonSolver.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/NumericMessages.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/OneBasedArrays.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/SingularValueDecomposition.cpp
)

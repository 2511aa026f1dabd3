# Numerical toolkit: 1-based arrays, LU, Newton, SVD, least squares, Brent; powers over
# arrays for derived logs.
target_sources(boreanalyst_core PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/BrentMinimiser.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/LinearLeastSquares.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/LuDecomposition.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/NewtonSolver.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/NumericMessages.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/OneBasedArrays.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/SingularValueDecomposition.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/numeric/VectorPow.cpp
)

# glibc's vector maths library (part of libc6-dev on Debian) raises four doubles or eight
# floats at a time; used where the processor runs AVX2, decided when the program runs.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$"
   AND CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  find_library(BA_LIBMVEC mvec)
  if(BA_LIBMVEC)
    target_compile_definitions(boreanalyst_core PRIVATE BA_HAVE_LIBMVEC)
    target_link_libraries(boreanalyst_core PRIVATE ${BA_LIBMVEC})
  endif()
endif()

# las_round_trip_tests: a LAS file imported, exported and imported again.
ba_add_test_program(las_round_trip_tests
  ${CMAKE_CURRENT_SOURCE_DIR}/LasRoundTripTest.cpp
)

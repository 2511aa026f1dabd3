# las_import_tests: ba_add_test_program(las_import_tests ...)

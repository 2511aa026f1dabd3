# export_tests: ba_add_test_program(export_tests ...)

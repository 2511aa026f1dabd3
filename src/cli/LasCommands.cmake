# import-las

# export-las, export-text, export-wellcad

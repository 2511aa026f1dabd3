# LAS, text and WellCAD export sources

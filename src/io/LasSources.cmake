# LAS import sources

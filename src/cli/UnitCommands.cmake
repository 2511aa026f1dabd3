# classify-units, convert-units

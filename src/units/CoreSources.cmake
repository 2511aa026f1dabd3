# Unit vocabulary and conversion sources

# The image trace commands.
target_sources(boreanalyst-cli PRIVATE
)

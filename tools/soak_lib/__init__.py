"""Long runs of fast games between two copies of the engine."""

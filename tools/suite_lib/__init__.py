"""Test positions, run on UCI engines."""

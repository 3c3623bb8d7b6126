"""Matches between UCI engines."""

"""Ratings: the matches of the ladder, one fit of all games, and the document that tells of it."""

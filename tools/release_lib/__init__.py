"""What a release tells of itself: the bill of materials."""

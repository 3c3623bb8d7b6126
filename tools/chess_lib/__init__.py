"""The rules of standard chess and Chess960, in plain Python."""

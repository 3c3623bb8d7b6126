"""What the Python tools share: chess, engines as processes, files and how a tool ends."""

"""UCI engines as processes, for every tool that talks to one."""

"""Limits of the system for a process that a test starts, as `preexec_fn`."""

import resource
import signal


def small_files(size):
    """No file can grow beyond the size: what is written past it fails, as on a full disk."""

    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (size, resource.RLIM_INFINITY))

    return limit


def little_memory(size):
    """The process cannot have more memory than so many bytes."""
    return lambda: resource.setrlimit(resource.RLIMIT_AS, (size, size))

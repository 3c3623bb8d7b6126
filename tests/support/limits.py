"""Limits of the system, for a process that a test starts (as `preexec_fn`) and for its own."""

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


def limit_own_files(test, size):
    """The same as small_files() for the process of the test, until it has ended."""
    handler = signal.getsignal(signal.SIGXFSZ)
    test.addCleanup(signal.signal, signal.SIGXFSZ, handler)
    old = resource.getrlimit(resource.RLIMIT_FSIZE)
    test.addCleanup(resource.setrlimit, resource.RLIMIT_FSIZE, old)
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (size, old[1]))

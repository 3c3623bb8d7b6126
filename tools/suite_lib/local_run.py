"""The positions of a run on this machine, in several threads that mostly wait."""

import queue
import threading

from suite_lib.player import Interrupted, Player, Stop


class LocalRun:
    """Tasks are (position, name of the engine); the records come in the order of their ends."""

    def __init__(self, settings, tasks, jobs):
        self._settings = settings
        self._tasks = queue.SimpleQueue()
        for task in tasks:
            self._tasks.put(task)
        self._entries = queue.SimpleQueue()
        self._stop = Stop()
        self._jobs = min(jobs, len(tasks))

    def stop(self):
        """Ends the run without those positions that are being searched."""
        self._stop.stop()

    def entries(self):
        """All records until the last thread has ended; raises what one of them raised."""
        threads = [threading.Thread(target=self._work) for _ in range(self._jobs)]
        for thread in threads:
            thread.start()
        try:
            running = len(threads)
            while running > 0:
                entry = self._entries.get()
                if entry is None:
                    running -= 1
                elif isinstance(entry, Exception):
                    raise entry
                else:
                    yield entry
        finally:
            self.stop()
            for thread in threads:
                thread.join()

    def _work(self):
        players = {
            entrant.name: Player(entrant, self._settings, self._stop)
            for entrant in self._settings.entrants
        }
        try:
            while not self._stop.wanted:
                position, name = self._tasks.get_nowait()
                self._entries.put(players[name].solve(position))
        except (queue.Empty, Interrupted):
            pass
        except Exception as error:
            self._entries.put(error)
        finally:
            for player in players.values():
                player.close()
            self._entries.put(None)

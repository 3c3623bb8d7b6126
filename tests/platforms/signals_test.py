"""Signals that another processor's Linux sends."""

import signal
import unittest

from program import Conversation, command


class SignalTest(unittest.TestCase):
    def test_a_signal_ends_a_search(self):
        with Conversation(command("orvelin-play")) as engine:
            engine.send("go infinite\n")
            engine.until("info depth 3 ")
            engine.process.send_signal(signal.SIGTERM)
            self.assertEqual(engine.process.wait(60), 128 + signal.SIGTERM)


if __name__ == "__main__":
    unittest.main()

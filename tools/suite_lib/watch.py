"""What the lines of one search say about a test position."""

from orvelin_lib.engine import EngineFailure, number_after

# Longer announcements take too long to prove by the rules alone. A mate that was found before the
# engine told a line has a small tree.
PROVABLE_MATE = 2
PROVABLE_SILENT_MATE = 3
ANSWERS = ("bestmove", "readyok", "uciok")


def expect_silence(lines):
    """A failure when one of the lines is an answer that nobody asked for."""
    for _, line in lines:
        if line.split(" ")[0] in ANSWERS:
            raise EngineFailure(f"answers what nobody asked: '{line[:80]}'", "stray")


class Watch:
    """Follows one search: its first move, its announced mate, and since when they are right."""

    def __init__(self, position, began):
        self._position = position
        self._began = began
        self._first_move = None
        self._mate = None
        self._told_score = False
        # The moment from which on the lines have been right.
        self._right_since = None
        self._nodes = self._depth = None
        self._answer = None
        self._answered = None

    def read(self, lines):
        """Takes the lines of the search in, of which the last is the answer."""
        *before, (moment, answer) = lines
        for arrival, line in before:
            words = line.split()
            if words and words[0] == "info":
                self._info(arrival, words)
        self._answer = "".join(answer.split()[1:2])
        self._answered = moment
        expect_silence(before)

    def _info(self, moment, words):
        if "string" in words or number_after(words, "multipv") not in (None, 1):
            return
        self._nodes = number_after(words, "nodes") or self._nodes
        self._depth = number_after(words, "depth") or self._depth
        self._told_score |= "score" in words
        # A bound is no announcement.
        if "score" in words and "lowerbound" not in words and "upperbound" not in words:
            self._mate = number_after(words, "mate")
        if "pv" in words[:-1]:
            self._first_move = words[words.index("pv") + 1]
        if not self._position.solved_by(self._first_move, self._mate):
            self._right_since = None
        elif self._right_since is None:
            self._right_since = moment

    def _check(self):
        """A failure when the answer, or the last announcement, cannot be true."""
        position, mate = self._position, self._mate
        if self._answer not in position.moves:
            raise EngineFailure(f"no legal move: '{self._answer[:20]}'", "illegal")
        if mate is None:
            return
        if position.mate is not None and mate <= 0:
            raise EngineFailure(f"says mate {mate} where it mates in {position.mate}", "lie")
        if 0 < mate <= PROVABLE_MATE and not position.mates(self._answer, mate):
            raise EngineFailure(f"says mate {mate}, but {self._answer} does not force it", "lie")

    def _prove_mate(self):
        """Some engines find a short mate before they have told a line: the rules stand in."""
        wanted = self._position.mate
        if wanted is None or self._told_score:
            return
        for count in range(1, min(wanted, PROVABLE_SILENT_MATE) + 1):
            if self._position.mates(self._answer, count):
                self._mate = count
                return

    def figures(self):
        """What a record keeps of the search, whatever it was worth."""
        return {
            "move": self._answer,
            "mate": self._mate,
            "nodes": self._nodes,
            "depth": self._depth,
            "elapsed": None if self._answered is None else round(self._answered - self._began, 4),
        }

    def verdict(self):
        """The seconds to the solution, None when it was not found; a failure when the engine
        lies."""
        self._check()
        self._prove_mate()
        if not self._position.solved_by(self._answer, self._mate):
            return None
        since = self._answered if self._right_since is None else self._right_since
        return round(since - self._began, 4)

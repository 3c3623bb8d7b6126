"""What the engine is asked."""

from dataclasses import dataclass

from explain_lib.evaluation import BadTable, Evaluation
from explain_lib.figures import signed
from orvelin_lib.engine import EngineFailure, UciEngine
from orvelin_lib.rules import legal_moves

# Enough for what one move of a game is searched here, and soon emptied.
HASH_MEBIBYTES = 16
# A mate counts as a score beyond all others, in pawns.
MATE_PAWNS = 1000.0
# Searches of one position until one lasts long enough for a score.
MOST_ATTEMPTS = 60


class Score:
    """What a position is worth for White: pawns, and how that is written."""

    def __init__(self, pawns, text):
        self.pawns, self.text = pawns, text

    @classmethod
    def of_pawns(cls, pawns):
        return cls(pawns, signed(pawns))

    @classmethod
    def of_mate(cls, moves, white_mates):
        sign = 1 if white_mates else -1
        text = ("+" if white_mates else "-") + f"M{moves}" if moves else "mate"
        return cls(sign * (MATE_PAWNS - moves), text)

    @classmethod
    def of_end(cls, position):
        """The score of a position without a legal move, None of any other one."""
        if legal_moves(position):
            return None
        return cls.of_mate(0, position.side == "b") if position.in_check() else cls.of_pawns(0.0)


@dataclass(frozen=True)
class Limit:
    """How far positions are searched."""

    kind: str
    number: int

    def __str__(self):
        return f"{self.kind} {self.number}"

    def longer(self, steps):
        """The limit, so many steps further on."""
        if self.kind == "depth":
            return f"depth {self.number + steps // 4}"
        return f"nodes {self.number * (1 + steps)}"


class Session:
    """One engine that evaluates and searches positions for as long as the context lasts."""

    def __init__(self, command, patience):
        self._patience = patience
        self._engine = UciEngine(command, patience=patience)

    def __enter__(self):
        try:
            self._engine.handshake()
            self._engine.set_option("Hash", HASH_MEBIBYTES)
            self._engine.new_game()
        except BaseException:
            self._engine.kill()
            raise
        return self

    def __exit__(self, kind, *_):
        try:
            if kind is None:
                self._engine.quit(self._patience)
        finally:
            self._engine.kill()

    @property
    def name(self):
        return self._engine.name

    def evaluation(self, line):
        """The evaluation of the position of a Line."""
        self._engine.send(line.command())
        self._engine.send("eval")
        self._engine.send("isready")
        answer = [text for _, text in self._engine.wait_for("readyok", self._patience)]
        try:
            return Evaluation(line.position.board, answer)
        except BadTable as problem:
            raise EngineFailure(
                f"the answer to eval is not its table of terms: {problem}"
            ) from None

    def score(self, line, limit, evaluation):
        """The score of a search of a position with moves. The engine tells none of a search that
        takes less than a millisecond: such a one is made again, and longer."""
        for attempt in range(MOST_ATTEMPTS):
            if attempt:
                # With an empty table the same search takes longer too.
                self._engine.new_game()
            found = self._search(line, limit.longer(attempt))
            if found:
                return self._read_score(found, line.position.side == "w", evaluation)
        raise EngineFailure("the search gives no score")

    def _search(self, line, words):
        """The two words after the last `score` of a search, None when there is none."""
        self._engine.send(line.command())
        self._engine.send(f"go {words}")
        found = None
        for _, text in self._engine.wait_for("bestmove", self._patience):
            words = text.split()
            if words[:1] == ["info"] and "score" in words:
                index = words.index("score")
                found = words[index + 1 : index + 3]
        return found

    @staticmethod
    def _read_score(found, white, evaluation):
        try:
            kind, number = found[0], int(found[1])
        except (IndexError, ValueError):
            raise EngineFailure(f"no score: {' '.join(found)}") from None
        if kind == "mate":
            return Score.of_mate(abs(number), white == (number > 0))
        pawns = evaluation.pawns(number)
        return Score.of_pawns(pawns if white else -pawns)


class Line:
    """A start position and the moves from it: what the engine is told, and where it leads."""

    def __init__(self, fen, position):
        self._fen, self.position = fen, position
        self._moves = []

    def play(self, move):
        # The king taking his own rook means castling in every kind of chess.
        self._moves.append(move.text(chess960=True))
        self.position = self.position.after(move)

    def command(self):
        moves = " moves " + " ".join(self._moves) if self._moves else ""
        return f"position fen {self._fen}{moves}"
